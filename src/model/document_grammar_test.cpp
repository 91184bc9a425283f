#include "model/document_grammar.h"

#include <gtest/gtest.h>

#include "model/entry.h"

namespace {

constexpr Element kKnown[] = {Element::metadata,
                              Element::trusteeInfo,
                              Element::userInfo,
                              Element::dirInfo,
                              Element::file,
                              Element::trustee,
                              Element::inheritedRightsFilter,
                              Element::rights,
                              Element::name,
                              Element::id,
                              Element::zid,
                              Element::path,
                              Element::user,
                              Element::spaceUsed,
                              Element::quotaAmount,
                              Element::idNotFound,
                              Element::time,
                              Element::utc,
                              Element::string,
                              Element::numberOfTimes,
                              Element::directory};

TEST(ElementDispatch, EveryKnownNameGivesItsElement) {
  for (const Element element : kKnown) {
    const ElementMatch match = matchElement(elementName(element));
    EXPECT_EQ(match.element, element) << elementName(element);
    EXPECT_EQ(match.right, 0u);
  }
}

TEST(ElementDispatch, EveryRightGivesItsBit) {
  for (const char *name : {"read", "write", "create", "erase", "accessControl", "fileScan",
                           "modify", "supervisor", "salvage", "secure"}) {
    const ElementMatch match = matchElement(name);
    EXPECT_EQ(match.element, Element::right) << name;
    EXPECT_EQ(match.right, rightBit(name)) << name;
  }
}

// Names of a known length and first letters that are not known names.
TEST(ElementDispatch, NearNamesAreUnknown) {
  for (const char *name : {"",
                           "i",
                           "ix",
                           "zed",
                           "fill",
                           "rEad",
                           "Read",
                           "wrote",
                           "strong",
                           "second",
                           "trustees",
                           "trusteE",
                           "dirinfo",
                           "salvagE",
                           "metadatA",
                           "fileScam",
                           "spaceUsex",
                           "directorx",
                           "idNotFounD",
                           "supervisoR",
                           "trusteeInfx",
                           "quotaAmounT",
                           "numberOfTimeS",
                           "accessContro1",
                           "inheritedRightsFilteR",
                           "a:read",
                           "READ"}) {
    EXPECT_EQ(matchElement(name).element, Element::unknown) << name;
    EXPECT_EQ(elementOf(name), Element::unknown) << name;
  }
}

TEST(ElementDispatch, PlacesOfTheGrammar) {
  EXPECT_TRUE(allowedIn(Element::metadata, Element::document));
  EXPECT_TRUE(allowedIn(Element::right, Element::inheritedRightsFilter));
  EXPECT_TRUE(allowedIn(Element::zid, Element::file));
  EXPECT_FALSE(allowedIn(Element::user, Element::trusteeInfo));
  EXPECT_FALSE(allowedIn(Element::unknown, Element::metadata));
  EXPECT_FALSE(allowedIn(Element::metadata, Element::metadata));
  EXPECT_EQ(elementName(Element::document), "");
  EXPECT_EQ(elementName(Element::right), "right");
}

}  // namespace
