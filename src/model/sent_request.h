// A request as trovan sends it to the file system, read back into what the file system makes of
// it: its kind, the file or user it names and the values it sets, texts decoded as the file
// system decodes them. Only the exact forms trovan's restore writes are read; anything else
// (a request whose texts carried markup, say) is not.
#pragma once
#include <string>
#include <string_view>

#include "model/entry.h"

enum class RequestKind : std::uint8_t {
  addTrustee,
  modifyInheritedRightsFilter,
  userSpaceRestrictions,
  addQuota,
};

struct SentRequest {
  RequestKind kind = RequestKind::addTrustee;
  bool ad = false;            // type="adID" (addTrustee, userSpaceRestrictions)
  bool gemel = false;         // carries <gemelPath/>
  std::string fileName;       // addTrustee, modifyInheritedRightsFilter, addQuota
  std::string user;           // the <name> or <userID> of addTrustee, the <userName> of a quota
  std::string volume;         // userSpaceRestrictions
  std::string amount;         // the quota of userSpaceRestrictions and addQuota
  RightsSet rights = 0;       // addTrustee, modifyInheritedRightsFilter
  bool unknownRight = false;  // a rights element outside the table
};

// The same parts with their texts kept elsewhere (a SentRequest's, or a record's bytes).
struct SentRequestView {
  RequestKind kind = RequestKind::addTrustee;
  bool ad = false;
  bool gemel = false;
  std::string_view fileName;
  std::string_view user;
  std::string_view volume;
  std::string_view amount;
  RightsSet rights = 0;
  bool unknownRight = false;
};
SentRequestView viewOf(const SentRequest &request);

// Reads one request. False when the bytes are not exactly one of trovan's request forms.
bool readSentRequest(std::string_view bytes, SentRequest &request);
// The same in one pass, without copies: a text of `request` is `bytes`' own where the file
// system reads it as it stands, and one of `decoded`'s strings where it decodes references.
bool readSentRequest(std::string_view bytes, SentRequestView &request, SentRequest &decoded);

// The entry kind a request kind restores.
EntryKind entryKindOf(RequestKind kind);
std::string_view requestName(RequestKind kind);
