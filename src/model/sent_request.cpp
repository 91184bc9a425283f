#include "model/sent_request.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "document/rights.h"
#include "model/server_text.h"

namespace {

constexpr std::string_view kFileOpen =
    "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>";
constexpr std::string_view kFileClose = "</fileRequest>";
constexpr std::string_view kVolumeOpen =
    "<virtualIO><datastream name=\"command\"/></virtualIO><quillRequest>";
constexpr std::string_view kVolumeClose = "</quillRequest>";

// The rights' empty elements ("<read/>"), found by the letter after their '<': `first` holds,
// for each letter, the first right (in table order) whose name starts with it, and `next` for
// each right the next one that does.
constexpr std::size_t kRightCount = std::size(kRights);
constexpr std::size_t kElementRoom = 16;  // the longest element, "<" name "/>", fits
struct RightElements {
  std::array<std::array<char, kElementRoom>, kRightCount> texts{};
  std::array<std::uint8_t, kRightCount> lengths{};
  std::array<int, kRightCount> next{};
  std::array<int, 26> first{};
};
constexpr RightElements kRightElements = [] {
  RightElements table;
  table.first.fill(-1);
  for (std::size_t at = kRightCount; at-- > 0;) {
    std::array<char, kElementRoom> &text = table.texts[at];
    std::size_t length = 0;
    text[length++] = '<';
    for (const char *c = kRights[at].name; *c != '\0'; ++c)
      text[length++] = *c;
    text[length++] = '/';
    text[length++] = '>';
    table.lengths[at] = static_cast<std::uint8_t>(length);
    int &first = table.first[static_cast<std::size_t>(kRights[at].name[0] - 'a')];
    table.next[at] = first;
    first = static_cast<int>(at);
  }
  return table;
}();

// "<read/><write/>" into `rights` (added to those there); false when it is not a run of empty
// elements. A name outside the table sets `unknown`.
bool readRights(std::string_view text, RightsSet &rights, bool &unknown) {
  while (!text.empty()) {
    if (!text.starts_with('<')) return false;
    const std::size_t end = text.find("/>");
    if (end == std::string_view::npos) return false;
    const RightsSet bit = rightBit(text.substr(1, end - 1));
    if (bit == 0) unknown = true;
    rights |= bit;
    text.remove_prefix(end + 2);
  }
  return true;
}

// Reads the body of a request from its start in one forward pass, without searching for what
// must stand at a known place: each literal piece is compared where it must be, a text ends at
// the first '<' after it (found by memchr), and rights are taken as the elements trovan writes,
// one after the other. Once a piece does not fit, nothing more is read (ok() is false).
class BodyReader {
public:
  explicit BodyReader(std::string_view body) : at_(body.data()), end_(body.data() + body.size()) {}

  bool ok() const { return ok_; }
  bool atEnd() const { return ok_ && at_ == end_; }

  bool take(std::string_view literal) {
    if (!ok_ || !startsWith(at_, literal)) return false;
    at_ += literal.size();
    return true;
  }
  void need(std::string_view literal) {
    if (!take(literal)) ok_ = false;
  }

  // A text that holds no '<', and the end tag that must follow it (consumed).
  std::string_view value(std::string_view endTag) {
    const char *const start = at_;
    const char *const open = ok_ ? findOpen(start) : nullptr;
    if (open == nullptr) return fail();
    at_ = open;
    if (!take(endTag)) return fail();
    return {start, open};
  }
  // A text up to the first `endTag` ('<'s and all), and that end tag.
  std::string_view taggedValue(std::string_view endTag) {
    const char *const start = at_;
    for (const char *open = start; ok_ && (open = findOpen(open)) != nullptr; ++open)
      if (startsWith(open, endTag)) {
        at_ = open + endTag.size();
        return {start, open};
      }
    return fail();
  }
  // A run of empty elements up to the first `endTag` (consumed) into `rights`; false when the
  // text up to there is no such run.
  bool rights(std::string_view endTag, RightsSet &rights, bool &unknown) {
    if (!ok_) return false;
    // The elements trovan writes, then the end tag. Neither can stand where the other does: an
    // element's '<' is followed by a letter.
    while (const RightsSet bit = knownRight())
      rights |= bit;
    if (take(endTag)) return true;
    // Anything else: the text up to the end tag, element by element.
    return readRights(taggedValue(endTag), rights, unknown) && ok_;
  }

private:
  const char *at_;
  const char *end_;
  bool ok_ = true;

  bool startsWith(const char *at, std::string_view literal) const {
    return static_cast<std::size_t>(end_ - at) >= literal.size() &&
           std::memcmp(at, literal.data(), literal.size()) == 0;
  }
  const char *findOpen(const char *from) const {
    return static_cast<const char *>(std::memchr(from, '<', static_cast<std::size_t>(end_ - from)));
  }
  std::string_view fail() {
    ok_ = false;
    return {};
  }
  // The right whose element stands here (consumed), or 0 (nothing consumed).
  RightsSet knownRight() {
    if (end_ - at_ < 2 || at_[0] != '<') return 0;
    const std::size_t letter = static_cast<unsigned char>(at_[1]) - std::size_t{'a'};
    if (letter >= kRightElements.first.size()) return 0;
    for (int at = kRightElements.first[letter]; at >= 0; at = kRightElements.next[at]) {
      const std::string_view element(kRightElements.texts[at].data(), kRightElements.lengths[at]);
      if (take(element)) return static_cast<RightsSet>(1u << at);
    }
    return 0;
  }
};

// The rights up to `rightsEnd`, the file name, the gemel marker if there is one and the
// closing pieces of a trustee or filter request.
[[gnu::always_inline]] inline bool readRightsOnFile(BodyReader &body, SentRequestView &request,
                                                    std::string_view rightsEnd,
                                                    std::string_view closing) {
  if (!body.rights(rightsEnd, request.rights, request.unknownRight)) return false;
  body.need("<fileName>");
  request.fileName = body.taggedValue("</fileName>");
  request.gemel = body.take("<gemelPath/>");
  body.need(closing);
  return body.ok();
}

bool readTrusteeRequest(BodyReader &body, SentRequestView &request) {
  if (!body.take("<trustees><addTrustee")) {
    request.kind = RequestKind::modifyInheritedRightsFilter;
    body.need("<trustees><modifyInheritedRightsFilter><inheritedRightsFilter>");
    return readRightsOnFile(body, request, "</inheritedRightsFilter>",
                            "</modifyInheritedRightsFilter></trustees>");
  }
  // The first '<' after the user must open its end tag, and the rights follow.
  if (body.take(" type=\"adID\"><userID>")) {
    request.ad = true;
    request.user = body.value("</userID><rights>");
  } else {
    body.need("><name>");
    request.user = body.value("</name><rights>");
  }
  return readRightsOnFile(body, request, "</rights>", "<symLink/></addTrustee></trustees>");
}

bool readQuotaRequest(BodyReader &body, SentRequestView &request) {
  request.kind = RequestKind::addQuota;
  body.need("<addQuota><fileName>");
  request.fileName = body.taggedValue("</fileName>");
  request.gemel = body.take("<gemelPath/>");
  body.need("<quotaAmount>");
  request.amount = body.value("</quotaAmount>");
  body.need("</addQuota></directoryQuota>");
  return body.ok();
}

bool readUserQuotaRequest(BodyReader &body, SentRequestView &request) {
  request.kind = RequestKind::userSpaceRestrictions;
  body.need("<userSpaceRestrictions>");
  if (body.take("<set type=\"adID\">"))
    request.ad = true;
  else
    body.need("<set>");
  body.need("<volumeName>");
  request.volume = body.value("</volumeName>");
  body.need("<userName>");
  request.user = body.value("</userName>");
  body.need("<quota>");
  request.amount = body.value("</quota>");
  request.gemel = body.take("<gemelPath/>");
  body.need("</set></userSpaceRestrictions>");
  return body.ok();
}

// A text of the view into its owned place, unless it is there already (decoded into it).
void keep(std::string_view text, std::string &owned) {
  if (text.data() != owned.data()) owned.assign(text);
}

// The texts read (those of the request's form: an empty one read is not null) as the file
// system reads them when the request holds an '&': decoded, into `decoded`'s strings.
void decodeTexts(SentRequestView &request, SentRequest &decoded) {
  const auto decode = [](std::string_view &text, std::string &storage) {
    if (text.data() == nullptr) return;
    decodeAsServer(text, storage);
    text = storage;
  };
  decode(request.fileName, decoded.fileName);
  decode(request.user, decoded.user);
  decode(request.volume, decoded.volume);
  decode(request.amount, decoded.amount);
}

}  // namespace

bool readSentRequest(std::string_view bytes, SentRequestView &request, SentRequest &decoded) {
  request = SentRequestView();
  const bool file = bytes.starts_with(kFileOpen);
  if (file ? !bytes.ends_with(kFileClose)
           : !bytes.starts_with(kVolumeOpen) || !bytes.ends_with(kVolumeClose))
    return false;
  const std::size_t open = file ? kFileOpen.size() : kVolumeOpen.size();
  const std::size_t close = file ? kFileClose.size() : kVolumeClose.size();
  // Never true (the opening piece ends with '>', and only the closing piece's last byte is
  // one, so they cannot overlap), but it costs nothing to be sure.
  if (bytes.size() < open + close) return false;
  BodyReader body(bytes.substr(open, bytes.size() - open - close));
  bool read = false;
  if (!file)
    read = readUserQuotaRequest(body, request);
  else if (body.take("<directoryQuota>"))
    read = readQuotaRequest(body, request);
  else
    read = readTrusteeRequest(body, request);
  if (!read || !body.atEnd()) return false;
  // The file system decodes references: only a request with an '&' reads otherwise.
  if (std::memchr(bytes.data(), '&', bytes.size()) != nullptr) decodeTexts(request, decoded);
  return true;
}

bool readSentRequest(std::string_view bytes, SentRequest &request) {
  SentRequestView view;
  const bool read = readSentRequest(bytes, view, request);
  // Field by field, so that the texts' storage serves the next request too.
  request.kind = view.kind;
  request.ad = view.ad;
  request.gemel = view.gemel;
  keep(view.fileName, request.fileName);
  keep(view.user, request.user);
  keep(view.volume, request.volume);
  keep(view.amount, request.amount);
  request.rights = view.rights;
  request.unknownRight = view.unknownRight;
  return read;
}

SentRequestView viewOf(const SentRequest &request) {
  return {request.kind,   request.ad,     request.gemel,  request.fileName,    request.user,
          request.volume, request.amount, request.rights, request.unknownRight};
}

EntryKind entryKindOf(RequestKind kind) {
  switch (kind) {
  case RequestKind::addTrustee: return EntryKind::trustee;
  case RequestKind::modifyInheritedRightsFilter: return EntryKind::filter;
  case RequestKind::userSpaceRestrictions: return EntryKind::userQuota;
  case RequestKind::addQuota: break;
  }
  return EntryKind::dirQuota;
}

std::string_view requestName(RequestKind kind) {
  switch (kind) {
  case RequestKind::addTrustee: return "addTrustee";
  case RequestKind::modifyInheritedRightsFilter: return "modifyInheritedRightsFilter";
  case RequestKind::userSpaceRestrictions: return "userSpaceRestrictions";
  case RequestKind::addQuota: break;
  }
  return "addQuota";
}
