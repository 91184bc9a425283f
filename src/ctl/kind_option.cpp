#include "ctl/kind_option.h"

namespace {

constexpr EntryKind kKinds[] = {EntryKind::trustee, EntryKind::filter, EntryKind::userQuota,
                                EntryKind::dirQuota};

constexpr char kKindList[] = "{trustee,filter,user-quota,dir-quota}";

}  // namespace

std::string_view kindOptionName(EntryKind kind) {
  switch (kind) {
  case EntryKind::trustee: return "trustee";
  case EntryKind::filter: return "filter";
  case EntryKind::userQuota: return "user-quota";
  case EntryKind::dirQuota: break;
  }
  return "dir-quota";
}

bool kindFromOption(std::string_view text, EntryKind &kind) {
  for (const EntryKind each : kKinds) {
    if (text == kindOptionName(each) || text == kindKey(each)) {
      kind = each;
      return true;
    }
  }
  return false;
}

CLI::Validator kindOptionValidator() {
  return CLI::Validator(
      [](std::string &value) -> std::string {
        EntryKind kind;
        if (!kindFromOption(value, kind)) return value + " not in " + kKindList;
        value = kindOptionName(kind);
        return "";
      },
      kKindList);
}
