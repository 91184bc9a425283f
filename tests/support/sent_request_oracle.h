// The first reader of trovan's requests, kept only as a reference for tests: it reads a request
// piece by piece, searching for each text's end and each right's "/>". The reader in use must
// give what this one gives for every input: the same answer and, for a request it reads, the
// same parts.
#pragma once
#include <string>
#include <string_view>

#include "model/sent_request.h"
#include "model/server_text.h"

namespace oracle {

namespace detail {

constexpr std::string_view kFileOpen =
    "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>";
constexpr std::string_view kFileClose = "</fileRequest>";
constexpr std::string_view kVolumeOpen =
    "<virtualIO><datastream name=\"command\"/></virtualIO><quillRequest>";
constexpr std::string_view kVolumeClose = "</quillRequest>";

// Reads a request from its start, piece by piece, in one forward pass. Its steps are inlined,
// so that each compares with its literal directly.
struct Cursor {
  std::string_view rest;
  bool ok = true;
  bool plain = false;  // no '&' in the whole request: every text stands as it is

  // A text as the file system reads it: the text itself, or its decoding into `storage`.
  [[gnu::always_inline]] std::string_view decode(std::string_view text,
                                                 std::string &storage) const {
    if (plain) return text;
    decodeAsServer(text, storage);
    return storage;
  }

  [[gnu::always_inline]] bool take(std::string_view literal) {
    if (!ok || !rest.starts_with(literal)) return false;
    rest.remove_prefix(literal.size());
    return true;
  }
  [[gnu::always_inline]] void need(std::string_view literal) {
    if (!take(literal)) ok = false;
  }
  // The text up to `end` (a tag), which is consumed. A text that holds a '<' is not a value:
  // without tags the first '<' must start `end`; with them, the first `end` ends the text.
  [[gnu::always_inline]] std::string_view until(std::string_view end, bool allowTags = false) {
    std::size_t at = std::string_view::npos;
    if (ok) at = allowTags ? rest.find(end) : rest.find('<');
    if (at == std::string_view::npos || !rest.substr(at).starts_with(end)) {
      ok = false;
      return {};
    }
    const std::string_view text = rest.substr(0, at);
    rest.remove_prefix(at + end.size());
    return text;
  }
  // A value's text, up to `end`, as the file system reads it.
  [[gnu::always_inline]] std::string_view value(std::string_view end, std::string &storage,
                                                bool allowTags = false) {
    return decode(until(end, allowTags), storage);
  }
};

// "<read/><write/>" to a set; false when it is not a run of empty elements.
inline bool readRights(std::string_view text, RightsSet &rights, bool &unknown) {
  rights = 0;
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

inline bool readTrusteeRequest(Cursor &cursor, SentRequestView &request, SentRequest &decoded) {
  if (cursor.take("<trustees><addTrustee type=\"adID\"><userID>")) {
    request.ad = true;
    request.user = cursor.value("</userID>", decoded.user);
  } else if (cursor.take("<trustees><addTrustee><name>")) {
    request.user = cursor.value("</name>", decoded.user);
  } else {
    request.kind = RequestKind::modifyInheritedRightsFilter;
    cursor.need("<trustees><modifyInheritedRightsFilter><inheritedRightsFilter>");
    if (!readRights(cursor.until("</inheritedRightsFilter>", true), request.rights,
                    request.unknownRight))
      return false;
    cursor.need("<fileName>");
    request.fileName = cursor.value("</fileName>", decoded.fileName, true);
    request.gemel = cursor.take("<gemelPath/>");
    cursor.need("</modifyInheritedRightsFilter></trustees>");
    return cursor.ok;
  }
  cursor.need("<rights>");
  if (!readRights(cursor.until("</rights>", true), request.rights, request.unknownRight))
    return false;
  cursor.need("<fileName>");
  request.fileName = cursor.value("</fileName>", decoded.fileName, true);
  request.gemel = cursor.take("<gemelPath/>");
  cursor.need("<symLink/></addTrustee></trustees>");
  return cursor.ok;
}

inline bool readQuotaRequest(Cursor &cursor, SentRequestView &request, SentRequest &decoded) {
  request.kind = RequestKind::addQuota;
  cursor.need("<directoryQuota><addQuota><fileName>");
  request.fileName = cursor.value("</fileName>", decoded.fileName, true);
  request.gemel = cursor.take("<gemelPath/>");
  cursor.need("<quotaAmount>");
  request.amount = cursor.value("</quotaAmount>", decoded.amount);
  cursor.need("</addQuota></directoryQuota>");
  return cursor.ok;
}

inline bool readUserQuotaRequest(Cursor &cursor, SentRequestView &request, SentRequest &decoded) {
  request.kind = RequestKind::userSpaceRestrictions;
  cursor.need("<userSpaceRestrictions>");
  if (cursor.take("<set type=\"adID\">"))
    request.ad = true;
  else
    cursor.need("<set>");
  cursor.need("<volumeName>");
  request.volume = cursor.value("</volumeName>", decoded.volume);
  cursor.need("<userName>");
  request.user = cursor.value("</userName>", decoded.user);
  cursor.need("<quota>");
  request.amount = cursor.value("</quota>", decoded.amount);
  request.gemel = cursor.take("<gemelPath/>");
  cursor.need("</set></userSpaceRestrictions>");
  return cursor.ok;
}

}  // namespace detail

inline bool readSentRequest(std::string_view bytes, SentRequestView &request,
                            SentRequest &decoded) {
  request = SentRequestView();
  using namespace detail;
  Cursor cursor{bytes, true, bytes.find('&') == std::string_view::npos};
  bool read = false;
  if (cursor.take(kFileOpen)) {
    if (!bytes.ends_with(kFileClose)) return false;
    cursor.rest.remove_suffix(kFileClose.size());
    read = cursor.rest.starts_with("<directoryQuota>")
               ? readQuotaRequest(cursor, request, decoded)
               : readTrusteeRequest(cursor, request, decoded);
  } else if (cursor.take(kVolumeOpen)) {
    if (!bytes.ends_with(kVolumeClose)) return false;
    cursor.rest.remove_suffix(kVolumeClose.size());
    read = readUserQuotaRequest(cursor, request, decoded);
  }
  return read && cursor.ok && cursor.rest.empty();
}

}  // namespace oracle
