#include "model/sent_request.h"

#include "model/server_text.h"

namespace {

constexpr std::string_view kFileOpen =
    "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>";
constexpr std::string_view kFileClose = "</fileRequest>";
constexpr std::string_view kVolumeOpen =
    "<virtualIO><datastream name=\"command\"/></virtualIO><quillRequest>";
constexpr std::string_view kVolumeClose = "</quillRequest>";

// Reads a request from its start, piece by piece. Its steps are inlined, so that each compares
// with its literal directly.
struct Cursor {
  std::string_view rest;
  bool ok = true;
  bool plain = false;  // no '&' in the whole request: every text stands as it is

  // A text as the file system reads it, into `out`.
  [[gnu::always_inline]] void decode(std::string_view text, std::string &out) const {
    if (plain)
      out.assign(text);
    else
      decodeAsServer(text, out);
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
  // without tags the first '<' must start `end`.
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
};

// "<read/><write/>" to a set; false when it is not a run of empty elements.
bool readRights(std::string_view text, RightsSet &rights, bool &unknown) {
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

bool readTrusteeRequest(Cursor &cursor, SentRequest &request) {
  if (cursor.take("<trustees><addTrustee type=\"adID\"><userID>")) {
    request.ad = true;
    cursor.decode(cursor.until("</userID>"), request.user);
  } else if (cursor.take("<trustees><addTrustee><name>")) {
    cursor.decode(cursor.until("</name>"), request.user);
  } else {
    request.kind = RequestKind::modifyInheritedRightsFilter;
    cursor.need("<trustees><modifyInheritedRightsFilter><inheritedRightsFilter>");
    if (!readRights(cursor.until("</inheritedRightsFilter>", true), request.rights,
                    request.unknownRight))
      return false;
    cursor.need("<fileName>");
    cursor.decode(cursor.until("</fileName>", true), request.fileName);
    request.gemel = cursor.take("<gemelPath/>");
    cursor.need("</modifyInheritedRightsFilter></trustees>");
    return cursor.ok;
  }
  cursor.need("<rights>");
  if (!readRights(cursor.until("</rights>", true), request.rights, request.unknownRight))
    return false;
  cursor.need("<fileName>");
  cursor.decode(cursor.until("</fileName>", true), request.fileName);
  request.gemel = cursor.take("<gemelPath/>");
  cursor.need("<symLink/></addTrustee></trustees>");
  return cursor.ok;
}

bool readQuotaRequest(Cursor &cursor, SentRequest &request) {
  request.kind = RequestKind::addQuota;
  cursor.need("<directoryQuota><addQuota><fileName>");
  cursor.decode(cursor.until("</fileName>", true), request.fileName);
  request.gemel = cursor.take("<gemelPath/>");
  cursor.need("<quotaAmount>");
  cursor.decode(cursor.until("</quotaAmount>"), request.amount);
  cursor.need("</addQuota></directoryQuota>");
  return cursor.ok;
}

bool readUserQuotaRequest(Cursor &cursor, SentRequest &request) {
  request.kind = RequestKind::userSpaceRestrictions;
  cursor.need("<userSpaceRestrictions>");
  if (cursor.take("<set type=\"adID\">"))
    request.ad = true;
  else
    cursor.need("<set>");
  cursor.need("<volumeName>");
  cursor.decode(cursor.until("</volumeName>"), request.volume);
  cursor.need("<userName>");
  cursor.decode(cursor.until("</userName>"), request.user);
  cursor.need("<quota>");
  cursor.decode(cursor.until("</quota>"), request.amount);
  request.gemel = cursor.take("<gemelPath/>");
  cursor.need("</set></userSpaceRestrictions>");
  return cursor.ok;
}

}  // namespace

bool readSentRequest(std::string_view bytes, SentRequest &request) {
  // Field by field, so that the texts' storage serves the next request too.
  request.kind = RequestKind::addTrustee;
  request.ad = request.gemel = request.unknownRight = false;
  request.fileName.clear();
  request.user.clear();
  request.volume.clear();
  request.amount.clear();
  request.rights = 0;
  Cursor cursor{bytes, true, bytes.find('&') == std::string_view::npos};
  bool read = false;
  if (cursor.take(kFileOpen)) {
    if (!bytes.ends_with(kFileClose)) return false;
    cursor.rest.remove_suffix(kFileClose.size());
    read = cursor.rest.starts_with("<directoryQuota>") ? readQuotaRequest(cursor, request)
                                                       : readTrusteeRequest(cursor, request);
  } else if (cursor.take(kVolumeOpen)) {
    if (!bytes.ends_with(kVolumeClose)) return false;
    cursor.rest.remove_suffix(kVolumeClose.size());
    read = readUserQuotaRequest(cursor, request);
  }
  return read && cursor.ok && cursor.rest.empty();
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
