#include "ctl/diff_rows.h"

namespace {

constexpr const char *kChangeNames[] = {"added", "removed", "changed"};
constexpr const char kChangeSigns[] = {'+', '-', '~'};

bool hasRights(EntryKind kind) { return kind == EntryKind::trustee || kind == EntryKind::filter; }

Row valueOf(const Entry *entry) {
  if (entry == nullptr) return nullptr;
  return hasRights(entry->kind) ? Row(rightsLetters(entry->rights)) : Row(entry->amount);
}

std::string valueText(const Row &row, EntryKind kind) {
  if (row.is_null()) return "";
  const std::string value = row.get<std::string>();
  return hasRights(kind) ? "[" + value + "]" : value;
}

EntryKind kindOfKey(const std::string &key) {
  for (int kind = 0; kind < 4; ++kind)
    if (key == kindKey(static_cast<EntryKind>(kind))) return static_cast<EntryKind>(kind);
  return EntryKind::trustee;
}

}  // namespace

bool valuesDiffer(EntryKind kind, RightsSet oldRights, std::string_view oldAmount,
                  const Entry &current) {
  return hasRights(kind) ? oldRights != current.rights : oldAmount != current.amount;
}

Row changeRow(ChangeKind change, const Entry &entry, const Entry *old, const Entry *current) {
  Row row;
  row["type"] = "change";
  row["change"] = kChangeNames[static_cast<int>(change)];
  row["kind"] = kindKey(entry.kind);
  if (entry.kind != EntryKind::userQuota) row["path"] = comparablePath(entry);
  if (entry.kind == EntryKind::trustee || entry.kind == EntryKind::userQuota) {
    row["ad"] = entry.ad;
    row["name"] = entry.name;
    if (entry.ad) row["id"] = entry.id;
  }
  row["old"] = valueOf(old);
  row["new"] = valueOf(current);
  return row;
}

// "~ trustee         /a.txt u0.corp.TREE. [rw] -> [rwc]"
std::string changeText(const Row &row) {
  const std::string change = row["change"].get<std::string>();
  const EntryKind kind = kindOfKey(row["kind"].get<std::string>());
  std::string text(1, kChangeSigns[change == "added" ? 0 : change == "removed" ? 1 : 2]);
  std::string kindWords(kindName(kind));
  if (kind == EntryKind::filter) kindWords = "filter";
  kindWords.resize(15, ' ');
  text += ' ' + kindWords;
  if (row.contains("path")) text += ' ' + row["path"].get<std::string>();
  if (row.contains("name")) {
    const std::string name = row["name"].get<std::string>();
    if (!row.contains("id"))
      text += ' ' + name;
    else
      text += ' ' + row["id"].get<std::string>() + (name.empty() ? "" : " (" + name + ")");
  }
  const std::string old = valueText(row["old"], kind);
  const std::string current = valueText(row["new"], kind);
  if (change == "changed")
    text += ' ' + old + " -> " + current;
  else
    text += ' ' + (change == "added" ? current : old);
  return text;
}

Row diffSummaryRow(const std::string &oldLabel, const std::string &newLabel,
                   const DiffTally &tally) {
  Row row;
  row["type"] = "diffSummary";
  row["old"] = oldLabel;
  row["new"] = newLabel;
  row["oldEntries"] = tally.oldEntries;
  row["newEntries"] = tally.newEntries;
  row["added"] = tally.added;
  row["removed"] = tally.removed;
  row["changed"] = tally.changed;
  row["differences"] = tally.added + tally.removed + tally.changed;
  return row;
}

// "OLD -> NEW: 3 differences (1 added, 1 removed, 1 changed) in 4 and 4 entries"
std::string diffSummaryText(const Row &row) {
  const unsigned long count = row["differences"].get<unsigned long>();
  return row["old"].get<std::string>() + " -> " + row["new"].get<std::string>() + ": " +
         std::to_string(count) + (count == 1 ? " difference (" : " differences (") +
         std::to_string(row["added"].get<unsigned long>()) + " added, " +
         std::to_string(row["removed"].get<unsigned long>()) + " removed, " +
         std::to_string(row["changed"].get<unsigned long>()) + " changed) in " +
         std::to_string(row["oldEntries"].get<unsigned long>()) + " and " +
         std::to_string(row["newEntries"].get<unsigned long>()) + " entries";
}
