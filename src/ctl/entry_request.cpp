#include "ctl/entry_request.h"

#include <algorithm>

#include "document/records.h"
#include "document/xml_text.h"
#include "restore/restore_requests.h"

bool putTreeName(std::string_view name, const CheckOptions &options, std::string &out) {
  out = name;
  if (!options.treeGiven) return true;
  if (name.size() >= kNameTextSize) return false;
  char text[kNameTextSize];
  std::copy(name.begin(), name.end(), text);
  text[name.size()] = '\0';
  if (!replaceTreeName(text, options.tree.c_str(), sizeof text)) return false;
  out = text;
  return true;
}

// The user's name as trovan's reader leaves it: the raw text, with -t's tree name put in.
bool EntryRequests::userName(const Entry &entry) {
  if (putTreeName(entry.rawName, options_, name_)) return true;
  why_ = kTreeNameDoesNotFit;
  return false;
}

// The rights elements as written, a right named twice included; trovan refuses the entry when
// they do not fit its field.
bool EntryRequests::rights(const Entry &entry) {
  writtenElements(entry.rights, rights_);
  if (rights_.size() < kRightsListSize) return true;
  why_ = "the rights elements do not fit their field";
  return false;
}

bool EntryRequests::build(const Entry &entry, EntryRequest &request) {
  request = EntryRequest();
  why_ = {};
  path_ = options_.mountPoint;
  path_ += entry.rawPath;
  switch (entry.kind) {
  case EntryKind::trustee:
    if (!userName(entry) || !rights(entry)) return false;
    request.length = buildAddTrustee(path_, entry.rawId, name_, rights_, entry.ad);
    request.replyElement = kAddTrusteeReply;
    return true;
  case EntryKind::filter:
    if (!rights(entry)) return false;
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
