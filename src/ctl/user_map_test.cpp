#include "ctl/user_map.h"

#include <gtest/gtest.h>

TEST(UserMap, RulesCommentsAndQuotedFields) {
  UserMap map;
  ASSERT_EQ(parseUserMap("# a comment\n\nu0.corp.T.,u0.corp.N.\r\n\"a,\"\"b\",S-1-5-21-9\n", map),
            "");
  ASSERT_EQ(map.names.size(), 2u);
  EXPECT_EQ(map.names.at("u0.corp.T."), "u0.corp.N.");
  EXPECT_EQ(map.names.at("a,\"b"), "S-1-5-21-9");
}

TEST(UserMap, ProblemsNameLineAndColumn) {
  UserMap map;
  EXPECT_EQ(parseUserMap("a,b,c\n", map), "1:4: more than two fields: old,new");
  EXPECT_EQ(parseUserMap("a\n", map), "1:2: a rule needs two fields: old,new");
  EXPECT_EQ(parseUserMap(",b\n", map), "1:1: an empty old name");
  EXPECT_EQ(parseUserMap("x,\n", map), "1:3: an empty new name");
  EXPECT_EQ(parseUserMap("\"a\nb\n", map), "1:3: a quoted field without its closing '\"'");
  EXPECT_EQ(parseUserMap("\"a\"x,b\n", map), "1:4: text after a quoted field");
  EXPECT_EQ(parseUserMap("a\"b,c\n", map), "1:2: a '\"' inside an unquoted field");
  UserMap twice;
  EXPECT_EQ(parseUserMap("a,b\na,c\n", twice), "2:1: a second rule for a");
}

TEST(UserMap, SidsStartWithS15) {
  EXPECT_TRUE(isSid("S-1-5-21-1"));
  EXPECT_FALSE(isSid("s-1-5"));
  EXPECT_FALSE(isSid("S1.corp.T."));
}
