#include "save/tag_search.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

// Every test runs with the 64-byte, 32-byte and 16-byte loops (those the processor has).
class TagSearch : public testing::TestWithParam<int> {
protected:
  void SetUp() override { setTagSearchWidth(GetParam()); }
  void TearDown() override { resetTagSearch(); }
};

INSTANTIATE_TEST_SUITE_P(Widths, TagSearch, testing::Values(64, 32, 16),
                         [](const testing::TestParamInfo<int> &info) {
                           return "Bytes" + std::to_string(info.param);
                         });

// The plain search the fast one must agree with.
std::size_t naive(const std::string &text, std::size_t from, const std::string &needle) {
  return text.find(needle, from);
}

std::size_t fast(const std::string &text, std::size_t from, const std::string &needle) {
  const char *hit = findTag(text.data() + from, text.data() + text.size(), needle);
  return hit == nullptr ? std::string::npos : static_cast<std::size_t>(hit - text.data());
}

TEST_P(TagSearch, FindTagFindsTheFirstOccurrenceOnly) {
  const std::string text = "<file><path>a</path></file><file><path>b</path></file>";
  EXPECT_EQ(fast(text, 0, "</path>"), 13u);
  EXPECT_EQ(fast(text, 14, "</path>"), 40u);
  EXPECT_EQ(fast(text, 41, "</path>"), std::string::npos);
}

TEST_P(TagSearch, FindTagEmptyNeedleIsFoundAtTheStartAndShortTextsHoldNothing) {
  const std::string text = "abc";
  EXPECT_EQ(fast(text, 1, ""), 1u);
  EXPECT_EQ(fast(text, 0, "abcd"), std::string::npos);
  EXPECT_EQ(fast(text, 3, "a"), std::string::npos);
}

TEST_P(TagSearch, FindTagMatchRightAtTheEndOfALongTextIsFound) {
  std::string text(100, 'x');
  text += "</file>";
  for (std::size_t from = 0; from <= text.size(); ++from)
    EXPECT_EQ(fast(text, from, "</file>"), from <= 100 ? 100u : std::string::npos) << from;
}

TEST_P(TagSearch, FindTagNulBytesAreOrdinaryBytes) {
  std::string text(40, '\0');
  text.replace(30, 6, "<pa\0h>", 6);
  EXPECT_EQ(fast(text, 0, std::string("<pa\0h>", 6)), 30u);
}

TEST_P(TagSearch, FindTagRandomTextsAgreeWithAPlainSearch) {
  std::mt19937 random(7);
  const std::string alphabet = "<>/fileptahx";
  const std::string needles[] = {"<file>",     "</file>", "<path>", "</path>",
                                 "<",          "</",      "<f>",    "<trustee type=\"adID\">",
                                 "</trustee>", "ll",      "</a/>"};
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    const std::size_t size = random() % 120;
    for (std::size_t i = 0; i < size; ++i) {
      if (random() % 8 == 0)
        text += needles[random() % std::size(needles)];
      else
        text += alphabet[random() % alphabet.size()];
    }
    for (const std::string &needle : needles) {
      const std::size_t from = text.empty() ? 0 : random() % (text.size() + 1);
      ASSERT_EQ(fast(text, from, needle), naive(text, from, needle)) << text << " / " << needle;
    }
  }
}

TEST_P(TagSearch, FindTagTagAtEveryPlaceAcrossVectorBoundaries) {
  for (const std::string tag : {"</file>", "<path>", "</quillReply>", "<trustee type=\"adID\">"}) {
    for (std::size_t at = 0; at < 100; ++at) {
      std::string text(at, 'x');
      text += tag + std::string(at % 37, 'y');
      EXPECT_EQ(fast(text, 0, tag), at) << tag << " at " << at;
      // The same text one byte short of the tag's end holds nothing.
      std::string cut = text.substr(0, at + tag.size() - 1);
      EXPECT_EQ(fast(cut, 0, tag), std::string::npos) << tag << " at " << at;
    }
  }
}

TEST_P(TagSearch, FindTagSurvivorsThatDifferOnlyInTheMiddleAreRejected) {
  // The screen passes the byte after "<", or after "</", and the last one; the rest decides.
  const std::string text = std::string(40, ' ') + "<trustee type=\"adIX\">" + "<trustee>" +
                           std::string(40, ' ') + "<trustee type=\"adID\">";
  EXPECT_EQ(fast(text, 0, "<trustee type=\"adID\">"), 40u + 21 + 9 + 40);
}

// Where findNulAndTag's answers must be, worked out the plain way.
struct Expected {
  std::size_t nul;
  std::size_t tag;
};

Expected plainNulAndTag(const std::string &text, std::size_t tagFrom, std::size_t nulFrom,
                        const std::string &tag) {
  std::size_t nul = text.find('\0', nulFrom);
  std::size_t hit = text.find(tag, tagFrom);
  if (hit != std::string::npos && nul != std::string::npos && hit + tag.size() > nul)
    hit = std::string::npos;
  return {nul, hit};
}

Expected fastNulAndTag(const std::string &text, std::size_t tagFrom, std::size_t nulFrom,
                       const std::string &tag) {
  const PreparedTag prepared = prepareTag(tag);
  const NulAndTag found = findNulAndTag(prepared, text.data() + tagFrom, text.data() + nulFrom,
                                        text.data() + text.size());
  auto offset = [&](const char *at) {
    return at == nullptr ? std::string::npos : static_cast<std::size_t>(at - text.data());
  };
  return {offset(found.nul), offset(found.tag)};
}

TEST_P(TagSearch, FindNulAndTagFindsBothInOnePass) {
  const std::string tag = "</quillReply>";
  std::string text = std::string(100, 'a') + tag + std::string(50, 'b');
  Expected found = fastNulAndTag(text, 0, 0, tag);
  EXPECT_EQ(found.nul, std::string::npos);
  EXPECT_EQ(found.tag, 100u);
  text[120] = '\0';
  found = fastNulAndTag(text, 0, 0, tag);
  EXPECT_EQ(found.nul, 120u);
  EXPECT_EQ(found.tag, 100u);
  // A tag after the NUL is not part of the text.
  text[20] = '\0';
  found = fastNulAndTag(text, 0, 0, tag);
  EXPECT_EQ(found.nul, 20u);
  EXPECT_EQ(found.tag, std::string::npos);
  // A NUL before nulFrom is not looked at.
  found = fastNulAndTag(text, 0, 21, tag);
  EXPECT_EQ(found.nul, 120u);
  EXPECT_EQ(found.tag, 100u);
}

TEST_P(TagSearch, FindNulAndTagNulInTheFirstBytesBeforeTheVectorLoop) {
  // The bytes between nulFrom and the first vector's reach are looked at one by one.
  const std::string tag = "</quillReply>";
  std::string text = "x" + std::string(1, '\0') + std::string(80, 'y') + tag;
  Expected found = fastNulAndTag(text, 0, 0, tag);
  EXPECT_EQ(found.nul, 1u);
  EXPECT_EQ(found.tag, std::string::npos);
  text = std::string(1, '\0') + std::string(80, 'y') + tag;
  found = fastNulAndTag(text, 0, 0, tag);
  EXPECT_EQ(found.nul, 0u);
  EXPECT_EQ(found.tag, std::string::npos);
}

TEST_P(TagSearch, FindNulAndTagRandomTextsAgreeWithAPlainSearch) {
  std::mt19937 random(11);
  const std::string alphabet = std::string("<>/qulRepy", 10) + std::string(1, '\0');
  const std::string tags[] = {"</quillReply>", "<quillReply>", "<result value="};
  for (int round = 0; round < 4000; ++round) {
    std::string text;
    const std::size_t size = random() % 160;
    for (std::size_t i = 0; i < size; ++i) {
      if (random() % 10 == 0)
        text += tags[random() % std::size(tags)];
      else if (random() % 3 == 0)
        text += 'a';
      else
        text += alphabet[random() % (random() % 20 == 0 ? alphabet.size() : alphabet.size() - 1)];
    }
    const std::string &tag = tags[random() % std::size(tags)];
    const std::size_t nulFrom = text.empty() ? 0 : random() % (text.size() + 1);
    const std::size_t tagFrom = nulFrom - std::min<std::size_t>(nulFrom, random() % 14);
    if (text.find('\0', 0) < nulFrom) continue;  // the caller never has a NUL before nulFrom
    const Expected want = plainNulAndTag(text, tagFrom, nulFrom, tag);
    const Expected got = fastNulAndTag(text, tagFrom, nulFrom, tag);
    ASSERT_EQ(got.nul, want.nul) << round;
    ASSERT_EQ(got.tag, want.tag) << round;
  }
}

// findTagNoting's answers worked out the plain way: the stop tag, and each noted tag's first place
// up to it.
std::vector<std::size_t> plainNoting(const std::string &text, std::size_t from,
                                     const std::string &stop, const std::string &a,
                                     const std::string &b) {
  const std::size_t hit = text.find(stop, from);
  std::vector<std::size_t> result = {hit};
  for (const std::string *note : {&a, &b}) {
    std::size_t at = text.find(*note, from);
    if (at != std::string::npos && hit != std::string::npos && at > hit) at = std::string::npos;
    result.push_back(at);
  }
  return result;
}

std::vector<std::size_t> fastNoting(const std::string &text, std::size_t from,
                                    const std::string &stop, const std::string &a,
                                    const std::string &b) {
  const PreparedTag stopTag = prepareTag(stop);
  const PreparedTag notes[2] = {prepareTag(a), prepareTag(b)};
  const char *noted[2];
  const char *hit =
      findTagNoting(stopTag, notes, text.data() + from, text.data() + text.size(), noted);
  auto offset = [&](const char *at) {
    return at == nullptr ? std::string::npos : static_cast<std::size_t>(at - text.data());
  };
  return {offset(hit), offset(noted[0]), offset(noted[1])};
}

TEST_P(TagSearch, FindTagNotingNotesTheTagsPassedOnTheWay) {
  const std::string text = std::string(40, ' ') + "<file><zid>1</zid><path>/a</path>" +
                           std::string(70, ' ') + "</file><path>/b</path>";
  const std::vector<std::size_t> found = fastNoting(text, 0, "</file>", "<path>", "</path>");
  EXPECT_EQ(found, plainNoting(text, 0, "</file>", "<path>", "</path>"));
  EXPECT_EQ(found[0], 40u + 33 + 70);
  EXPECT_EQ(found[1], 40u + 18);
  EXPECT_EQ(found[2], 40u + 26);
  // Tags that only start after the stop tag are not noted.
  const std::vector<std::size_t> later = fastNoting(text, 41, "</file>", "<path>", "</path>");
  EXPECT_EQ(later, plainNoting(text, 41, "</file>", "<path>", "</path>"));
}

TEST_P(TagSearch, FindTagNotingWithoutTheStopTagNotesUpToTheEnd) {
  const std::string text = std::string(50, ' ') + "</path>" + std::string(50, ' ') + "<path>";
  const std::vector<std::size_t> found = fastNoting(text, 0, "</file>", "<path>", "</path>");
  EXPECT_EQ(found[0], std::string::npos);
  EXPECT_EQ(found[1], 107u);
  EXPECT_EQ(found[2], 50u);
}

TEST_P(TagSearch, FindTagNotingRandomTextsAgreeWithAPlainSearch) {
  std::mt19937 random(5);
  const std::string pieces[] = {
      "<file>", "</file>", "<path>",      "</path>",      "<",          "</", ">", "f",
      "p",      "x",       "<directory>", "</directory>", "<fileScan/>"};
  const std::string groups[][3] = {{"</file>", "<path>", "</path>"},
                                   {"</directory>", "<path>", "</path>"},
                                   {"</path>", "<path>", "</path>"}};
  for (int round = 0; round < 4000; ++round) {
    std::string text;
    const int count = static_cast<int>(random() % 60);
    for (int i = 0; i < count; ++i) {
      text += pieces[random() % std::size(pieces)];
      if (random() % 4 == 0) text += std::string(random() % 40, ' ');
    }
    const std::size_t from = text.empty() ? 0 : random() % (text.size() + 1);
    const auto &group = groups[random() % std::size(groups)];
    ASSERT_EQ(fastNoting(text, from, group[0], group[1], group[2]),
              plainNoting(text, from, group[0], group[1], group[2]))
        << text << " from " << from;
  }
}

}  // namespace

// ---- elements one after another ----

ElementSearch elementSearch(const std::string &start, const std::string &end) {
  static std::vector<std::string> kept;  // the tags must outlive the prepared forms
  kept.push_back(start);
  kept.push_back(end);
  return {prepareTag(kept[kept.size() - 2]), prepareTag(kept.back()), prepareTag("<path>"),
          prepareTag("</path>")};
}

std::vector<ElementPlaces> fastElements(const ElementSearch &search, const std::string &text,
                                        std::size_t from, std::size_t room) {
  std::vector<ElementPlaces> places(room + 1);
  const std::size_t count =
      findElements(search, text.data(), from, text.size(), places.data(), room);
  places.resize(count);
  return places;
}

// The walk done with plain searches; an element whose end tag is not found is not counted.
std::vector<ElementPlaces> naiveElements(const std::string &start, const std::string &end,
                                         const std::string &text, std::size_t from,
                                         std::size_t count) {
  std::vector<ElementPlaces> places;
  std::size_t at = from;
  while (places.size() < count) {
    const std::size_t p = text.find(start, at);
    if (p == std::string::npos) break;
    const std::size_t e = text.find(end, p);
    if (e == std::string::npos) break;
    std::size_t path = text.find("<path>", p);
    std::size_t pathEnd = text.find("</path>", p);
    if (path > e) path = kNotInside;
    if (pathEnd > e) pathEnd = kNotInside;
    places.push_back({p, e, path, pathEnd});
    at = e;
  }
  return places;
}

bool samePlaces(const ElementPlaces &a, const ElementPlaces &b) {
  return a.start == b.start && a.end == b.end && a.path == b.path && a.pathEnd == b.pathEnd;
}

// The fast walk gives the plain walk's first elements: all of them but those it leaves to the
// searches near the end of the text.
void expectPrefixOfNaive(const std::string &start, const std::string &end, const std::string &text,
                         std::size_t from, std::size_t room) {
  const std::vector<ElementPlaces> fast = fastElements(elementSearch(start, end), text, from, room);
  const std::vector<ElementPlaces> slow = naiveElements(start, end, text, from, room);
  ASSERT_LE(fast.size(), slow.size()) << text;
  for (std::size_t i = 0; i < fast.size(); ++i)
    ASSERT_TRUE(samePlaces(fast[i], slow[i]))
        << "element " << i << " of " << text << " from " << from << " tags " << start << end << ": "
        << fast[i].start << " " << fast[i].end << " " << fast[i].path << " " << fast[i].pathEnd
        << " / " << slow[i].start << " " << slow[i].end << " " << slow[i].path << " "
        << slow[i].pathEnd;
  // It stops short only within the last stretch that a vector step cannot reach.
  if (fast.size() < slow.size() && fast.size() < room) {
    ASSERT_GT(slow[fast.size()].end + 2 * 64 + 16, text.size()) << text;
  }
}

TEST_P(TagSearch, FindElementsGivesEachElementWithItsPathTags) {
  std::string text;
  for (int i = 0; i < 20; ++i)
    text += "<file><zid>" + std::to_string(i) + "</zid><path><![CDATA[/d/" + std::to_string(i) +
            "]]></path>\n<trustee><name>x</name></trustee>\n</file>\n";
  text += std::string(200, ' ');
  const std::vector<ElementPlaces> places =
      fastElements(elementSearch("<file>", "</file>"), text, 0, 64);
  ASSERT_EQ(places.size(), 20u);
  const std::vector<ElementPlaces> expected = naiveElements("<file>", "</file>", text, 0, 64);
  for (std::size_t i = 0; i < places.size(); ++i)
    EXPECT_TRUE(samePlaces(places[i], expected[i]));
}

TEST_P(TagSearch, FindElementsStopsAfterTheRoomGiven) {
  std::string text;
  for (int i = 0; i < 10; ++i)
    text += "<file><path>a</path></file>\n";
  text += std::string(200, ' ');
  EXPECT_EQ(fastElements(elementSearch("<file>", "</file>"), text, 0, 3).size(), 3u);
  // Going on from the end of the third one gives the fourth.
  const auto first = fastElements(elementSearch("<file>", "</file>"), text, 0, 3);
  const auto next = fastElements(elementSearch("<file>", "</file>"), text, first[2].end, 1);
  ASSERT_EQ(next.size(), 1u);
  EXPECT_EQ(next[0].start, 3 * 28u);
}

TEST_P(TagSearch, FindElementsPathTagsOutsideTheElementAreNotInside) {
  const std::string text =
      "<file><zid/></file><path></path><file></path><path></file>" + std::string(200, ' ');
  const auto places = fastElements(elementSearch("<file>", "</file>"), text, 0, 64);
  ASSERT_EQ(places.size(), 2u);
  EXPECT_EQ(places[0].path, kNotInside);
  EXPECT_EQ(places[0].pathEnd, kNotInside);
  EXPECT_EQ(places[1].pathEnd, 38u);
  EXPECT_EQ(places[1].path, 45u);
}

TEST_P(TagSearch, FindElementsPathTagsCanBeTheElementsOwnTags) {
  // With "path" as the element, its start and end tags are its path tags.
  const std::string text = "<path>/a</path>\n<path>/b</path>\n" + std::string(200, ' ');
  const auto places = fastElements(elementSearch("<path>", "</path>"), text, 0, 64);
  ASSERT_EQ(places.size(), 2u);
  EXPECT_TRUE(samePlaces(places[0], {0, 8, 0, 8}));
  EXPECT_TRUE(samePlaces(places[1], {16, 24, 16, 24}));
}

TEST_P(TagSearch, FindElementsLeavesTheLastStretchToTheSearches) {
  const std::string text = "<file></file>\n";
  // Too short for one vector step with room for the longest tag: nothing is found.
  EXPECT_EQ(fastElements(elementSearch("<file>", "</file>"), text, 0, 64).size(), 0u);
  EXPECT_EQ(fastElements(elementSearch("<file>", "</file>"), text, text.size(), 64).size(), 0u);
  EXPECT_EQ(fastElements(elementSearch("<file>", "</file>"), text, text.size() + 5, 64).size(), 0u);
}

TEST_P(TagSearch, FindElementsTagsAcrossEveryVectorBoundary) {
  // Each tag is moved one byte further at a time across two vector widths.
  for (std::size_t shift = 0; shift < 130; ++shift) {
    const std::string text = std::string(shift, 'x') +
                             "<file><zid>1</zid><path>/a</path></file>\n<file>\n<path>\n</path>"
                             "</file>" +
                             std::string(140, 'y');
    expectPrefixOfNaive("<file>", "</file>", text, 0, 64);
    expectPrefixOfNaive("<file>", "</file>", text, shift, 64);
    if (HasFatalFailure()) return;
  }
}

TEST_P(TagSearch, FindElementsRandomTextsAgreeWithPlainSearches) {
  std::mt19937 random(11);
  const std::string pieces[] = {
      "<file>", "</file>", "<path>",  "</path>", "<directory>", "</directory>",
      "<fi",    "le>",     "</pa",    "<",       ">",           "/",
      "\n",     "xyz",     "<filex>", "</file",  "<pat>"};
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    const int count = static_cast<int>(random() % 80);
    for (int i = 0; i < count; ++i)
      text += pieces[random() % std::size(pieces)];
    const std::size_t from = text.empty() ? 0 : random() % (text.size() + 1);
    const std::size_t room = 1 + random() % 8;
    expectPrefixOfNaive("<file>", "</file>", text, from, room);
    expectPrefixOfNaive("<directory>", "</directory>", text, from, room);
    expectPrefixOfNaive("<path>", "</path>", text, from, room);
    if (HasFatalFailure()) return;
  }
}
