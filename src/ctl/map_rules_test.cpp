#include "ctl/map_rules.h"

#include <gtest/gtest.h>

#include "ctl/entry_selection.h"

namespace {

Entry trustee(const std::string &path, const std::string &name) {
  Entry entry;
  entry.kind = EntryKind::trustee;
  entry.path = path;
  entry.name = name;
  return entry;
}

}  // namespace

TEST(MapRules, TreeReplacedAsTrovanRestoreReplacesIt) {
  MapRules rules;
  rules.tree = "NEW";
  Entry entry = trustee("/a", "u0.corp.OLD.");
  EXPECT_EQ(applyMapRules(rules, entry), "");
  EXPECT_EQ(entry.name, "u0.corp.NEW.");
  Entry bare = trustee("/a", "u0");
  EXPECT_EQ(applyMapRules(rules, bare), "the name u0 has no tree component (name.TREE.)");
  EXPECT_EQ(bare.name, "u0");
}

TEST(MapRules, UsersToArborAndToAd) {
  MapRules rules;
  rules.hasUsers = true;
  ASSERT_EQ(parseUserMap("u0.c.T.,S-1-5-21-7\nS-1-5-21-8,u8.c.T.\n", rules.users), "");
  Entry arbor = trustee("/a", "u0.c.T.");
  EXPECT_EQ(applyMapRules(rules, arbor), "");
  EXPECT_TRUE(arbor.ad);
  EXPECT_EQ(arbor.id, "S-1-5-21-7");
  Entry ad = trustee("/a", "someone");
  ad.ad = true;
  ad.id = "S-1-5-21-8";
  EXPECT_EQ(applyMapRules(rules, ad), "");
  EXPECT_FALSE(ad.ad);
  EXPECT_EQ(ad.name, "u8.c.T.");
  EXPECT_EQ(ad.id, "");
  Entry unknown = trustee("/a", "u9.c.T.");
  EXPECT_EQ(applyMapRules(rules, unknown), "no mapping for the user u9.c.T.");
}

TEST(MapRules, RebaseKeepsTheDirectoryQuotaForm) {
  MapRules rules;
  rules.rebase = {{"/old", "/new"}};
  Entry quota;
  quota.kind = EntryKind::dirQuota;
  quota.path = "\\old\\x";
  EXPECT_EQ(applyMapRules(rules, quota), "");
  EXPECT_EQ(quota.path, "\\new\\x");
  Entry outside = trustee("/older", "u");
  EXPECT_EQ(applyMapRules(rules, outside), "the path /older is under no -r OLD");
  std::pair<std::string, std::string> rule;
  EXPECT_TRUE(parseRebase("/a=/b=c", rule));
  EXPECT_EQ(rule.second, "/b=c");
  EXPECT_FALSE(parseRebase("/a", rule));
}

TEST(EntrySelection, PathsAreWholeComponents) {
  EXPECT_TRUE(pathUnder("/a", "/a"));
  EXPECT_TRUE(pathUnder("/a/b", "/a/"));
  EXPECT_FALSE(pathUnder("/ab", "/a"));
  EntrySelection selection;
  selection.paths = {"/a"};
  Entry quota;
  quota.kind = EntryKind::userQuota;
  EXPECT_FALSE(selection.selects(quota));
  EXPECT_TRUE(selection.selects(trustee("/a/x", "u")));
  selection.users = {"v"};
  EXPECT_FALSE(selection.selects(trustee("/a/x", "u")));
}
