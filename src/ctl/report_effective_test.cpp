// Worked cases of effective rights, each with its expected answer, on the volume that
// trovanctl(8) and the report transcripts use:
//   /                        admin.corp.TREE. s
//   /data                    staff.corp.TREE. rwcef
//   /data/open               filter rwceafmsvx (blocks nothing)
//   /data/finance            filter rf; ann (AD) rw
//   /data/finance/reports    staff.corp.TREE. r
//   /data/finance/2026       filter (none)
//   /data/finance/2026/q1    bob.corp.TREE. rwf
#include "ctl/report_effective.h"

#include <gtest/gtest.h>

#include "model_support.h"

namespace {

std::string trustee(const char *name, const char *rights, bool ad = false) {
  std::string text = ad ? "<trustee type=\"adID\"><name>ann</name><id>" : "<trustee><name>";
  text += ad ? std::string("S-1-5-21-1-2-3-1104</id>") : std::string(name) + "</name><id></id>";
  return text + "<rights value=\"\">" + rights + "</rights></trustee>";
}

std::string file(const char *path, const std::string &inside) {
  return std::string("<file><zid>1</zid><path>") + path + "</path>" + inside + "</file>\n";
}

const std::string kDocument =
    "<metadata>\n<trusteeInfo>\n" + file("/", trustee("admin.corp.TREE.", "<supervisor/>")) +
    file("/data", trustee("staff.corp.TREE.", "<read/><write/><create/><erase/><fileScan/>")) +
    file("/data/open",
         "<inheritedRightsFilter value=\"\"><read/><write/><create/><erase/><accessControl/>"
         "<fileScan/><modify/><supervisor/></inheritedRightsFilter>") +
    file("/data/finance", "<inheritedRightsFilter value=\"\"><read/><fileScan/>"
                          "</inheritedRightsFilter>" +
                              trustee("", "<read/><write/>", true)) +
    file("/data/finance/reports", trustee("staff.corp.TREE.", "<read/>")) +
    file("/data/finance/2026", "<inheritedRightsFilter value=\"\"></inheritedRightsFilter>") +
    file("/data/finance/2026/q1", trustee("bob.corp.TREE.", "<read/><write/><fileScan/>")) +
    "</trusteeInfo>\n<userInfo>\n</userInfo>\n<dirInfo>\n</dirInfo>\n</metadata>\n";

class EffectiveRights : public ::testing::Test {
protected:
  void SetUp() override {
    BytesFd input(kDocument);
    ASSERT_EQ(collectVolume(input.fd(), "doc", volume), "");
  }

  // "user=letters@from" for each trustee at `path`, in the order they come.
  std::vector<std::string> at(const std::string &path) {
    std::vector<std::string> texts;
    for (const EffectiveRight &each : effectiveAt(volume, path))
      texts.push_back(userLabelOf(volume.users[each.user]) + "=" +
                      rightsLetters(shownRights(each.rights)) + "@" +
                      std::string(volume.nodes[each.from].path));
    return texts;
  }

  ReportVolume volume;
};

using Texts = std::vector<std::string>;

TEST_F(EffectiveRights, SupervisorAtTheRootImpliesEveryRightEverywhere) {
  EXPECT_EQ(at("/"), Texts({"admin.corp.TREE.=rwceafmsvx@/"}));
}

TEST_F(EffectiveRights, RightsFlowDownWhereNoFilterStands) {
  EXPECT_EQ(at("/data/open/any/file"),
            Texts({"admin.corp.TREE.=rwceafmsvx@/", "staff.corp.TREE.=rwcef@/data"}));
}

TEST_F(EffectiveRights, AFilterMasksWhatComesInButNotTheAssignmentThere) {
  EXPECT_EQ(at("/data/finance"),
            Texts({"admin.corp.TREE.=rwceafmsvx@/", "staff.corp.TREE.=rf@/data",
                   "S-1-5-21-1-2-3-1104 (ann)=rw@/data/finance"}));
}

TEST_F(EffectiveRights, AnAssignmentReplacesWhatIsInherited) {
  EXPECT_EQ(at("/data/finance/reports/x"),
            Texts({"admin.corp.TREE.=rwceafmsvx@/", "staff.corp.TREE.=r@/data/finance/reports",
                   "S-1-5-21-1-2-3-1104 (ann)=rw@/data/finance"}));
}

TEST_F(EffectiveRights, AnEmptyFilterBlocksAllButSupervisor) {
  EXPECT_EQ(at("/data/finance/2026"), Texts({"admin.corp.TREE.=rwceafmsvx@/"}));
  EXPECT_EQ(at("/data/finance/2026/q1"),
            Texts({"admin.corp.TREE.=rwceafmsvx@/", "bob.corp.TREE.=rwf@/data/finance/2026/q1"}));
}

TEST_F(EffectiveRights, APathAboveEveryEntryHasOnlyTheRootsRights) {
  EXPECT_EQ(at("/elsewhere"), Texts({"admin.corp.TREE.=rwceafmsvx@/"}));
}

TEST_F(EffectiveRights, TheOneWalkGivesWhatTheWalkFromTheRootGivesAtEveryPath) {
  unsigned visited = 0;
  forEachEffective(volume, [&](std::uint32_t node, const EffectiveList &list) {
    ++visited;
    const EffectiveList alone = effectiveAt(volume, volume.nodes[node].path);
    ASSERT_EQ(list.size(), alone.size()) << volume.nodes[node].path;
    for (std::size_t at = 0; at < list.size(); ++at) {
      EXPECT_EQ(list[at].user, alone[at].user);
      EXPECT_EQ(list[at].rights, alone[at].rights);
      EXPECT_EQ(list[at].from, alone[at].from);
    }
  });
  EXPECT_EQ(visited, 7u);  // the paths with an entry; not the directories above them
}

TEST(ReportVolume, OrdersPathsComponentByComponent) {
  EXPECT_TRUE(treeBefore("/a", "/a/b"));
  EXPECT_TRUE(treeBefore("/a/z", "/a b"));
  EXPECT_TRUE(treeBefore("/", "/a"));
  EXPECT_FALSE(treeBefore("/a b", "/a/z"));
  EXPECT_EQ(nodePath("q"), "/q");
  EXPECT_EQ(nodePath("/x/"), "/x");
  EXPECT_TRUE(underPath("/data/x", "/data"));
  EXPECT_FALSE(underPath("/database", "/data"));
}

}  // namespace
