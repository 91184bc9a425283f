#include "model/entry_rules.h"

#include <cstring>

#include "document/records.h"
#include "model/server_text.h"

namespace {

// The longest texts trovan's reader takes: its field sizes less the terminator.
constexpr std::size_t kPathLimit = kPathTextSize - 1;
constexpr std::size_t kNameLimit = kNameTextSize - 1;
constexpr std::size_t kIdLimit = kIdTextSize - 1;
constexpr std::size_t kQuotaLimit = kQuotaTextSize - 1;

// "<path> ..." and the like: the element a value stands in.
std::string quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

bool hasDotDot(std::string_view path) {
  if (path.find("..") == std::string_view::npos) return false;
  std::size_t start = 0;
  while (start <= path.size()) {
    std::size_t end = path.find_first_of("/\\", start);
    if (end == std::string_view::npos) end = path.size();
    if (path.substr(start, end - start) == "..") return true;
    start = end + 1;
  }
  return false;
}

// Whether `text` holds nothing any rule looks at: no '<', no '&' and (for a path) no "..". One
// pass of strcspn (vectorised) over the text, stepping over single dots and over NULs, which
// end a C string but not the text.
bool plainText(const std::string &text, bool path) {
  const char *const specials = path ? "<&." : "<&";
  const char *at = text.c_str();
  const char *const end = at + text.size();
  while (true) {
    at += std::strcspn(at, specials);
    if (at == end) return true;
    // at[1] is at most the terminator.
    if (*at != '\0' && (*at != '.' || at[1] == '.')) return false;
    ++at;
  }
}

// `plain`: plainText() of the path, which is then also its raw text.
void checkPath(const Entry &entry, Position at, bool plain, const RuleSettings &settings,
               const FindingSink &sink) {
  const bool directory = entry.kind == EntryKind::dirQuota;
  const char separator = directory ? '\\' : '/';
  const std::string &path = entry.path;
  if (path.empty()) {
    sink({at, "path-outside-volume",
          "empty path: the " + std::string(kindName(entry.kind)) +
              " would apply to the mount "
              "point " +
              settings.mountPoint + " itself"});
  } else if (path[0] != separator && !(directory && path[0] == '/')) {
    std::string joined = settings.mountPoint + path;
    if (directory)
      for (char &c : joined)
        if (c == '\\') c = '/';
    sink({at, "path-outside-volume",
          "path " + quoted(path) + " does not start with \"" + separator +
              "\": after the mount point it names " + joined});
  }
  if (!plain && hasDotDot(path))
    sink({at, "path-outside-volume",
          "path " + quoted(path) +
              " has a \"..\" component: it can name a file outside the "
              "volume"});
}

// A raw text that goes into a request: markup it would carry, and what the file system makes
// of its references. Out of line: a plain text that is its own decoding never comes here.
[[gnu::noinline]] void checkRequestText(Position at, std::string_view element,
                                        const std::string &raw, const std::string &decoded,
                                        const FindingSink &sink) {
  if (formsMarkup(raw)) {
    sink({at, "markup-in-value",
          "<" + std::string(element) + "> text " + quoted(raw) +
              " would put markup into trovan's request"});
    return;
  }
  // Without an '&' the file system reads the text as it stands.
  if (raw.find('&') == std::string::npos) {
    if (raw == decoded) return;
  }
  if (const std::string read = decodeAsServer(raw); read != decoded)
    sink({at, "value-read-otherwise",
          "<" + std::string(element) + "> text " + quoted(decoded) +
              " goes into the request as it stands, and the file system reads it as " +
              quoted(read)});
}

// trovan's reader keeps a value in a field of fixed size; a longer one is refused. Out of line:
// only a value over its limit costs a call.
[[gnu::noinline]] void reportOverLimit(const Entry &entry, Position at, std::string_view what,
                                       std::size_t size, std::size_t limit,
                                       const FindingSink &sink) {
  sink({at, "over-limit",
        std::string(what) + " " + std::to_string(size) + " bytes, over trovan restore's limit of " +
            std::to_string(limit) + ": it sends nothing for this " +
            std::string(kindName(entry.kind))});
}

inline void checkLimit(const Entry &entry, Position at, std::string_view what, std::size_t size,
                       std::size_t limit, const FindingSink &sink) {
  if (size > limit) reportOverLimit(entry, at, what, size, limit, sink);
}

void checkLimits(const Entry &entry, Position pathAt, const RuleSettings &settings,
                 const FindingSink &sink) {
  if (entry.kind == EntryKind::dirQuota && entry.rawPath.size() <= kPathLimit &&
      settings.mountPoint.size() + entry.rawPath.size() > kPathLimit) {
    sink({pathAt, "restore-aborts",
          "the mount point and this path make a file name of " +
              std::to_string(settings.mountPoint.size() + entry.rawPath.size()) +
              " bytes, over 4,095: trovan restore would end the process here"});
  } else if (entry.kind == EntryKind::dirQuota) {
    checkLimit(entry, pathAt, "<path> text of", entry.rawPath.size(), kPathLimit, sink);
  } else if (entry.kind != EntryKind::userQuota) {
    checkLimit(entry, pathAt, "the mount point and <path> text make",
               settings.mountPoint.size() + entry.rawPath.size(), kPathLimit, sink);
  }
  if (entry.kind == EntryKind::trustee || entry.kind == EntryKind::userQuota)
    checkLimit(entry, entry.at, "<name> text of", entry.rawName.size(), kNameLimit, sink);
  if (entry.kind == EntryKind::trustee)
    checkLimit(entry, entry.at, "<id> text of", entry.rawId.size(), kIdLimit, sink);
  if (entry.kind == EntryKind::userQuota || entry.kind == EntryKind::dirQuota)
    checkLimit(entry, entry.at, "<quotaAmount> text of", entry.rawAmount.size(), kQuotaLimit, sink);
}

// trovan restore -n: the '&' its console path never decodes past, and the AD trustee it has no
// command for.
void checkRxlTexts(const Entry &entry, bool plainPath, const FindingSink &sink) {
  if (entry.kind != EntryKind::trustee && entry.kind != EntryKind::filter) return;
  if (!plainPath && hasUndecodableAmpersand(entry.rawPath))
    sink({entry.pathAt, "rxl-never-returns",
          "path text " + quoted(entry.rawPath) +
              " holds an '&' that trovan restore -n "
              "decodes forever: the restore would never return"});
  if (entry.kind == EntryKind::trustee && entry.ad)
    sink({entry.at, "rxl-ad-trustee",
          "AD trustee: trovan restore -n has no console command for it and writes its "
          "request on standard input, where nothing answers"});
  if (entry.kind == EntryKind::trustee && !entry.ad && hasUndecodableAmpersand(entry.rawName))
    sink({entry.at, "rxl-never-returns",
          "name text " + quoted(entry.rawName) +
              " holds an '&' that trovan restore -n "
              "decodes forever: the restore would never return"});
}

// The common entry, which no rule finds anything in: a trustee of an Arbor user or a filter, its
// path starting with '/', every text within its limit, its path and name their own raw texts
// and holding nothing a rule looks at. What is told without reading a text is asked first: an
// entry that fails only on its name has its path read again by the full rules.
inline bool plainFileEntry(const Entry &entry, const RuleSettings &settings) {
  const bool trustee = entry.kind == EntryKind::trustee;
  if (trustee ? entry.ad || entry.rawName.size() > kNameLimit || entry.rawId.size() > kIdLimit
              : entry.kind != EntryKind::filter)
    return false;
  const std::string &path = entry.path;
  if (path.empty() || path[0] != '/' || settings.mountPoint.size() + path.size() > kPathLimit ||
      entry.rawPath != path || !plainText(path, true))
    return false;
  return !trustee || (entry.rawName == entry.name && plainText(entry.name, false));
}

}  // namespace

void checkEntryRules(const Entry &entry, const RuleSettings &settings, const FindingSink &sink) {
  if (plainFileEntry(entry, settings)) return;
  const bool onFile = entry.kind != EntryKind::userQuota;
  const Position pathAt = entry.pathAt.line != 0 ? entry.pathAt : entry.at;
  // The usual path is its own raw text and holds nothing a rule looks at: one pass tells.
  const bool plainPath = onFile && entry.rawPath == entry.path && plainText(entry.rawPath, true);
  if (onFile) checkPath(entry, pathAt, plainPath, settings, sink);
  checkLimits(entry, pathAt, settings, sink);
  if (settings.rxlMode) {
    checkRxlTexts(entry, plainPath, sink);
    return;
  }
  if (onFile && !plainPath) checkRequestText(pathAt, "path", entry.rawPath, entry.path, sink);
  const bool ad = entry.kind == EntryKind::trustee && entry.ad;
  if (!ad && entry.kind != EntryKind::trustee && entry.kind != EntryKind::userQuota) return;
  const std::string &raw = ad ? entry.rawId : entry.rawName;
  const std::string &decoded = ad ? entry.id : entry.name;
  if (raw != decoded || !plainText(raw, false))
    checkRequestText(entry.at, ad ? "id" : "name", raw, decoded, sink);
}
