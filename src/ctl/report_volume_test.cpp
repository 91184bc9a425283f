// Reading a document into the report's volume: paths in tree order whatever order they come
// in, one node per path however many runs of entries name it, and one user per key.
#include "ctl/report_volume.h"

#include <gtest/gtest.h>

#include "model_support.h"

namespace {

std::string trustee(const std::string &name, const char *rights) {
  return "<trustee><name>" + name + "</name><id></id><rights value=\"\">" + rights +
         "</rights></trustee>";
}

std::string filter(const char *rights) {
  return std::string("<inheritedRightsFilter value=\"\">") + rights + "</inheritedRightsFilter>";
}

std::string file(const std::string &path, const std::string &inside) {
  return "<file><zid>1</zid><path>" + path + "</path>" + inside + "</file>\n";
}

std::string document(const std::string &trustees, const std::string &dirs = "") {
  return "<metadata>\n<trusteeInfo>\n" + trustees + "</trusteeInfo>\n<userInfo>\n</userInfo>\n" +
         "<dirInfo>\n" + dirs + "</dirInfo>\n</metadata>\n";
}

ReportVolume read(const std::string &text) {
  ReportVolume volume;
  BytesFd input(text);
  EXPECT_EQ(collectVolume(input.fd(), "doc", volume), "");
  return volume;
}

// "path<parent" for each node, in order.
std::vector<std::string> tree(const ReportVolume &volume) {
  std::vector<std::string> texts;
  for (const PathNode &node : volume.nodes)
    texts.push_back(std::string(node.path) + "<" +
                    (node.parent == kNone ? "-" : std::string(volume.nodes[node.parent].path)));
  return texts;
}

using Texts = std::vector<std::string>;

TEST(ReportVolume, PathsInSeveralSortedStretchesComeOutInTreeOrder) {
  const ReportVolume volume =
      read(document(file("/b/x", trustee("u.T.", "<read/>")) + file("/c", filter("<read/>")) +
                        file("/a/y", trustee("u.T.", "<read/>")) + file("/b", filter("")) +
                        file("/a b", trustee("v.T.", "<read/>")),
                    "<directory><zid>2</zid><path>\\b\\q</path><spaceUsed>0</spaceUsed>"
                    "<quotaAmount>5</quotaAmount></directory>\n"));
  EXPECT_EQ(tree(volume),
            Texts({"/<-", "/a</", "/a/y</a", "/a b</", "/b</", "/b/q</b", "/b/x</b", "/c</"}));
  EXPECT_EQ(volume.nodes[5].dirQuota, "5");
  EXPECT_TRUE(volume.nodes[4].hasFilter);
  EXPECT_FALSE(volume.nodes[1].hasEntry());  // /a is only a directory above /a/y
}

TEST(ReportVolume, RunsOfOnePathMergeInDocumentOrderAndTheLastFilterHolds) {
  const ReportVolume volume =
      read(document(file("/p", trustee("u.T.", "<read/>") + filter("<read/>")) +
                    file("/q", trustee("u.T.", "<write/>")) +
                    file("/p", trustee("v.T.", "<write/>") + filter("<write/>"))));
  ASSERT_EQ(tree(volume), Texts({"/<-", "/p</", "/q</"}));
  const std::span<const Assignment> held = volume.trusteesOf(volume.nodes[1]);
  ASSERT_EQ(held.size(), 2u);
  EXPECT_EQ(volume.users[held[0].user].name, "u.T.");
  EXPECT_EQ(volume.users[held[1].user].name, "v.T.");
  EXPECT_EQ(volume.nodes[1].filter, rightBit("write"));
}

TEST(ReportVolume, EachUserIsKeptOnceAmongThousands) {
  std::string trustees;
  for (int pass = 0; pass < 2; ++pass)
    for (int user = 0; user < 3000; ++user)
      trustees +=
          file("/f" + std::to_string(user), trustee("u" + std::to_string(user) + ".T.", "<read/>"));
  const ReportVolume volume = read(document(trustees));
  ASSERT_EQ(volume.users.size(), 3000u);
  for (std::uint32_t user = 0; user < 3000; ++user)
    EXPECT_EQ(volume.users[user].name, "u" + std::to_string(user) + ".T.");
  // Each path /fN holds user uN twice: both assignments name the one user.
  for (const PathNode &node : volume.nodes) {
    if (!node.hasEntry()) continue;
    const std::string name = "u" + std::string(node.path.substr(2)) + ".T.";
    for (const Assignment &each : volume.trusteesOf(node))
      EXPECT_EQ(volume.users[each.user].name, name);
  }
  EXPECT_EQ(volume.assignments.size(), 6000u);
}

}  // namespace
