#include "ctl/entry_request.h"

#include <algorithm>

#include "document/records.h"
#include "document/rights.h"
#include "document/xml_text.h"
#include "restore/restore_requests.h"

namespace {

// "<read/><write/>": the right elements of a set, in table order.
void putRights(RightsSet rights, std::string &out) {
  out.clear();
  for (std::size_t at = 0; at < std::size(kRights); ++at) {
    if ((rights & (1u << at)) == 0) continue;
    out += '<';
    out += kRights[at].name;
    out += "/>";
  }
}

}  // namespace

// The user's name as trovan's reader leaves it: the raw text, with -t's tree name put in.
bool EntryRequests::userName(const Entry &entry) {
  name_ = entry.rawName;
  if (!options_.treeGiven) return true;
  if (name_.size() >= kNameTextSize) return false;
  char name[kNameTextSize];
  std::copy(name_.begin(), name_.end(), name);
  name[name_.size()] = '\0';
  if (!replaceTreeName(name, options_.tree.c_str(), sizeof name)) return false;
  name_ = name;
  return true;
}

bool EntryRequests::build(const Entry &entry, EntryRequest &request) {
  request = EntryRequest();
  path_ = options_.mountPoint;
  path_ += entry.rawPath;
  switch (entry.kind) {
  case EntryKind::trustee:
    if (!userName(entry)) return false;
    putRights(entry.rights, rights_);
    request.length = buildAddTrustee(path_, entry.rawId, name_, rights_, entry.ad);
    request.replyElement = kAddTrusteeReply;
    return true;
  case EntryKind::filter:
    putRights(entry.rights, rights_);
    request.length = buildInheritedRightsFilter(path_, rights_);
    request.replyElement = kInheritedRightsFilterReply;
    return true;
  case EntryKind::userQuota:
    if (!userName(entry)) return false;
    request.length = buildUserQuota(options_.volume, name_, entry.rawAmount, entry.ad);
    request.replyElement = kUserQuotaReply;
    request.volumeRequest = true;
    return true;
  case EntryKind::dirQuota: break;
  }
  std::replace(path_.begin(), path_.end(), '\\', '/');
  request.length = buildDirQuota(path_, entry.rawAmount);
  request.replyElement = kDirQuotaReply;
  return true;
}
