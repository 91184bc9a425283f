#include "ctl/account_rows.h"

#include <gtest/gtest.h>

namespace {

Entry entryOf(EntryKind kind, bool ad) {
  Entry entry;
  entry.kind = kind;
  entry.ad = ad;
  entry.at = {12, 1};
  entry.path = kind == EntryKind::dirQuota ? "\\d\\e" : "/d/f";
  entry.name = ad ? "ann" : "bob.corp.TREE.";
  entry.id = ad ? "S-1-5-21-7" : "";
  entry.rights = 1 | 32;
  entry.amount = "1024";
  return entry;
}

std::string outcomeLine(const char *action, const Entry &entry) {
  std::string line = "left over from the line before";
  outcomeLine(line, action, entry);
  return line;
}

// The line made without a row is the row's own line, for every kind and action.
TEST(OutcomeLine, IsTheLineOfTheEntrysRow) {
  for (const EntryKind kind :
       {EntryKind::trustee, EntryKind::filter, EntryKind::userQuota, EntryKind::dirQuota})
    for (const bool ad : {false, true})
      for (const char *action : {"applied", "in-place", "skip"}) {
        const Entry entry = entryOf(kind, ad);
        EXPECT_EQ(outcomeLine(action, entry), renderAccountText(entryRow("apply", action, entry)));
      }
}

// The same with fields left empty one at a time (each part goes, with its blank), every right,
// and an action longer than the column.
TEST(OutcomeLine, IsTheLineOfTheEntrysRowWithFieldsEmpty) {
  for (const EntryKind kind :
       {EntryKind::trustee, EntryKind::filter, EntryKind::userQuota, EntryKind::dirQuota})
    for (const bool ad : {false, true})
      for (std::string Entry::*field : {&Entry::path, &Entry::name, &Entry::id, &Entry::amount}) {
        Entry entry = entryOf(kind, ad);
        entry.*field = "";
        entry.rights = 0x3ff;
        for (const char *action : {"applied", "not-yet-applied"})
          EXPECT_EQ(outcomeLine(action, entry),
                    renderAccountText(entryRow("apply", action, entry)));
        entry.name.clear();
        entry.id.clear();
        EXPECT_EQ(outcomeLine("applied", entry),
                  renderAccountText(entryRow("apply", "applied", entry)));
      }
}

TEST(OutcomeLine, ExactBytes) {
  EXPECT_EQ(outcomeLine("applied", entryOf(EntryKind::trustee, false)),
            "applied   trustee /d/f bob.corp.TREE. [rf]");
  EXPECT_EQ(outcomeLine("in-place", entryOf(EntryKind::userQuota, true)),
            "in-place  user quota S-1-5-21-7 (ann) 1024");
  EXPECT_EQ(outcomeLine("skip", entryOf(EntryKind::dirQuota, false)),
            "skip      directory quota /d/e 1024");
}

}  // namespace
