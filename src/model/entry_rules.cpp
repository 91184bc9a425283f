#include "model/entry_rules.h"

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

void checkPath(const Entry &entry, const RuleSettings &settings, const FindingSink &sink) {
  const Position at = entry.pathAt.line != 0 ? entry.pathAt : entry.at;
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
  if (hasDotDot(path))
    sink({at, "path-outside-volume",
          "path " + quoted(path) +
              " has a \"..\" component: it can name a file outside the "
              "volume"});
}

// A raw text that goes into a request: markup it would carry, and what the file system makes
// of its references.
void checkRequestText(const Entry &entry, Position at, std::string_view element,
                      const std::string &raw, const std::string &decoded, const FindingSink &sink) {
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

// trovan's reader keeps a value in a field of fixed size; a longer one is refused.
void checkLimit(const Entry &entry, Position at, std::string_view what, std::size_t size,
                std::size_t limit, const FindingSink &sink) {
  if (size <= limit) return;
  sink({at, "over-limit",
        std::string(what) + " " + std::to_string(size) + " bytes, over trovan restore's limit of " +
            std::to_string(limit) + ": it sends nothing for this " +
            std::string(kindName(entry.kind))});
}

void checkLimits(const Entry &entry, const RuleSettings &settings, const FindingSink &sink) {
  const Position pathAt = entry.pathAt.line != 0 ? entry.pathAt : entry.at;
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

}  // namespace

void checkEntryRules(const Entry &entry, const RuleSettings &settings, const FindingSink &sink) {
  if (entry.kind != EntryKind::userQuota) checkPath(entry, settings, sink);
  checkLimits(entry, settings, sink);
  if (settings.rxlMode) {
    if (entry.kind == EntryKind::trustee || entry.kind == EntryKind::filter) {
      if (hasUndecodableAmpersand(entry.rawPath))
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
    return;
  }
  const Position pathAt = entry.pathAt.line != 0 ? entry.pathAt : entry.at;
  if (entry.kind != EntryKind::userQuota)
    checkRequestText(entry, pathAt, "path", entry.rawPath, entry.path, sink);
  if (entry.kind == EntryKind::trustee && entry.ad)
    checkRequestText(entry, entry.at, "id", entry.rawId, entry.id, sink);
  else if (entry.kind == EntryKind::trustee || entry.kind == EntryKind::userQuota)
    checkRequestText(entry, entry.at, "name", entry.rawName, entry.name, sink);
}
