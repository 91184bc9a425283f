// The trustee walkers with the reader's fast steps over plain entries against the same walkers
// reading every tag the general way: on generated and mutated documents both send the same
// requests, print the same messages, return the same status and leave the reader in the same
// state (and it reads the rest of the document the same).
#include <gtest/gtest.h>
#include <regex.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "channel/admin_channel.h"
#include "document/plain_entries.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "document/tag_reader_state.h"
#include "document_mutation.h"
#include "restore/trustee_restore.h"
#include "restore_fixture.h"

using namespace testing_support;

namespace {

std::string repeat(const std::string &piece, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i)
    text += piece;
  return text;
}

// A name, id or path text: plain, in CDATA, or of a length near a field's limit.
std::string fieldText(std::mt19937 &random, std::size_t limit) {
  switch (random() % 8) {
  case 0: return "<![CDATA[a<b]c&d" + std::to_string(random() % 99) + "]]>";
  case 1: return std::string(limit - 2 + random() % 4, 'x');  // around the field's size
  case 2: return "";
  case 3: return "<![CDATA[" + std::string(limit - 2 + random() % 4, 'y') + "]]>";
  case 4: return "u" + std::to_string(random() % 50) + ".staff.corp.TREE.";
  default: return "name" + std::to_string(random() % 1000) + "&amp;co";
  }
}

std::string rightsList(std::mt19937 &random) {
  static const char *const kRights[] = {"<read/>", "<write/>", "<fileScan/>", "<supervisor/>"};
  switch (random() % 10) {
  case 0: return repeat("<supervisor/>", 38 + random() % 4);        // near the list's 512 bytes
  case 1: return "<" + std::string(60 + random() % 6, 'r') + "/>";  // near a name's 63
  case 2: return "<r2/><read />";
  case 3: return "<read/><rights/><write/>";               // ends a trustee's rights
  case 4: return "<inheritedRightsFilter/><supervisor/>";  // ends a filter's rights
  default: {
    std::string list;
    for (unsigned n = random() % 5; n > 0; --n)
      list += kRights[random() % 4];
    return list;
  }
  }
}

std::string rightsElement(std::mt19937 &random, const std::string &name) {
  static const char *const kValues[] = {"RF", "", "a/b", "R W", "rwf", "SRWCEMFA"};
  std::string value =
      random() % 10 == 0 ? std::string(62 + random() % 4, 'R') : std::string(kValues[random() % 6]);
  return "<" + name + " value=\"" + value + "\">" + rightsList(random) + "</" + name + ">";
}

// A trustee; with `ends`, now and then one that ends the walk (an AD trustee without an id, or
// a trustee without a name).
std::string trustee(std::mt19937 &random, bool ends) {
  const unsigned endEvery = ends ? 50 : 0xffffffff;
  const bool ad = random() % 5 == 0;
  std::string text = ad ? "<trustee type=\"adID\">" : "<trustee>";
  std::string name = fieldText(random, 1024);
  if (name.empty() && random() % endEvery != 0) name = "x";
  text += "<name>" + name + "</name>";
  if (!ad ? random() % 4 != 0 : random() % endEvery != 0) {
    std::string id = random() % 2 ? fieldText(random, 190) : "";
    if (ad && id.empty() && random() % endEvery != 0) id = "S-1-5-21-7";
    text += "<id>" + id + "</id>";
  }
  if (random() % 10 != 0) text += rightsElement(random, "rights");
  return text + "</trustee>\n";
}

std::string fileHead(std::mt19937 &random) {
  std::string text = "<file>";
  if (random() % 5 != 0)
    text += "<zid>" + std::string(random() % 8 == 0 ? 1020 + random() % 8 : 9, '7') + "</zid>";
  switch (random() % 6) {
  case 0: return text + "<path>/a/plain&amp;" + std::to_string(random() % 9) + "</path>\n";
  case 1: return text + "<path><![CDATA[/a]]]]><![CDATA[>b]]></path>\n";
  case 2: return text + "<path>" + fieldText(random, 4096 - 9) + "</path>\n";
  default: return text + "<path><![CDATA[/p" + std::to_string(random() % 20) + "/d]]></path>\n";
  }
}

// A trustee section of plain files with odd pieces here and there (after one file in oddEvery).
// With `ends`, some entries end the walk, and NUL bytes and long texts come in (which may end it
// too, as may the odd pieces).
std::string generateFiles(std::mt19937 &random, std::size_t files, bool ends = true) {
  const unsigned oddEvery = ends ? 12 : 0xffffffff;
  static const char *const kOdd[] = {"\n",         " ",        "<zid></zid>", "<trustee/>",
                                     "</trustee>", "<name>",   "<![CDATA[",   "]]>",
                                     "<x/>",       "<rights>", "</file>",     "text",
                                     "\n\n",       "<file >",  "<trustee >",  "\n<file/>"};
  std::string doc;
  for (std::size_t i = 0; i < files; ++i) {
    doc += fileHead(random);
    for (unsigned n = 1 + random() % 3; n > 0; --n)
      doc += trustee(random, ends);
    if (random() % 4 == 0) doc += rightsElement(random, "inheritedRightsFilter") + "\n";
    if (random() % oddEvery == 0) doc += kOdd[random() % 16];
    if (ends && random() % 200 == 0) doc += std::string(1, '\0');
    if (ends && random() % 150 == 0)
      doc += std::string(9000 + random() % 4000, 't');  // past a window
    doc += "</file>\n";
  }
  return doc;
}

const std::string kSectionEnd =
    "</trusteeInfo>\n<userInfo>\n<user><name>after</name></user>\n</userInfo>\n";

std::string generateSection(std::mt19937 &random, std::size_t files) {
  return generateFiles(random, files) + kSectionEnd;
}

// Random byte changes, insertions, deletions and a cut at the end.
std::string mutate(std::mt19937 &random, std::string doc) {
  static constexpr char kSpecial[] = "<>/[]!\0 \"=a";
  return mutateDocument(random, std::move(doc), std::string_view(kSpecial, sizeof kSpecial - 1));
}

// Every request is written down and answered with the same reply.
struct Exchange {
  std::string requests;
  std::string reply;
};

int answer(const char *request, std::size_t length, void *context) {
  Exchange &exchange = *static_cast<Exchange *>(context);
  exchange.requests.append(request, length).append("\n");
  std::snprintf(replyBuffer, static_cast<std::size_t>(replyBufferSize), "%s",
                exchange.reply.c_str());
  return 0;
}

// How a walk is run: the run settings drawn for a seed.
struct Settings {
  int showActions;
  int reflectOnGemel;
  int result;
  const char *tree;
  bool filter;
};

Settings drawSettings(unsigned seed) {
  static const std::string kLongTree(1000, 'T');
  static const char *const kTrees[] = {nullptr, "NEWTREE", kLongTree.c_str()};
  std::mt19937 random(seed * 31 + 7);
  return {static_cast<int>(random() % 2), static_cast<int>(random() % 2), random() % 4 == 0 ? 5 : 0,
          kTrees[random() % 3], random() % 4 == 0};
}

// Restores the section in doc with the fast steps on or off, and writes down everything that can
// be seen: the status, the output, the requests, the reader's state and the rest of the document
// as the reader reads it.
std::string walk(const std::string &doc, const Settings &settings, bool plainSteps) {
  resetProcessState();
  showActions = settings.showActions;
  reflectOnGemel = settings.reflectOnGemel;
  usePlainSteps(plainSteps);
  regex_t filter;
  if (settings.filter) regcomp(&filter, "[0-9]/d", REG_NOSUB);
  Exchange exchange{"", replyWith(settings.result, "refused", "why")};
  setRequestStandIn(answer, &exchange);
  inputFd = memfd_create("doc", 0);
  if (write(inputFd, doc.data(), doc.size()) != static_cast<ssize_t>(doc.size())) return "!";
  lseek(inputFd, 0, SEEK_SET);
  Output output;
  const int status =
      walkTrusteeSection("/srv/vol1", settings.filter ? &filter : nullptr, settings.tree, 0);
  output.finish();
  const tag_reader_state::InputState &state = tag_reader_state::input;
  std::string log = "status " + std::to_string(status) + "\nout:\n" + output.out + "err:\n" +
                    output.err + "requests:\n" + exchange.requests + "state " +
                    std::to_string(state.position) + " " + std::to_string(state.windowStart) + " " +
                    std::to_string(state.windowEnd) + " " + std::to_string(state.loaded) + " " +
                    std::to_string(state.inCdata) + std::to_string(state.pendingEmptyEnd) + "\n";
  log.append(state.data + state.windowStart, state.windowEnd - state.windowStart);
  log += "\nrest:\n";
  char name[kTagNameSize] = "";  // a stale tag at the start gives it back
  unsigned long isEndTag = 0;
  for (int calls = 0; calls < 100 && readTag(name, &isEndTag, "rest") == 0; ++calls)
    log += std::string(isEndTag ? "/" : "") + name + "\n";
  close(inputFd);
  inputFd = 0;
  if (settings.filter) regfree(&filter);
  usePlainSteps(true);
  return log;
}

class PlainTrusteeDifferentialTest : public testing::Test {
protected:
  void TearDown() override {
    usePlainSteps(true);
    resetProcessState();
  }
  void compare(const std::string &doc, unsigned seed) {
    const Settings settings = drawSettings(seed);
    const std::string general = walk(doc, settings, false);
    const std::string fast = walk(doc, settings, true);
    ASSERT_EQ(fast, general) << "seed " << seed;
    requests += static_cast<std::size_t>(std::count(general.begin(), general.end(), '\n'));
  }
  std::size_t requests = 0;
};

TEST_F(PlainTrusteeDifferentialTest, GeneratedSectionsRestoreTheSame) {
  for (unsigned seed = 1; seed <= 150; ++seed) {
    std::mt19937 random(seed);
    compare(generateSection(random, 20 + random() % 300), seed);
  }
  EXPECT_GT(requests, 20000u);  // the walks went deep into the documents
}

TEST_F(PlainTrusteeDifferentialTest, MutatedSectionsRestoreTheSame) {
  for (unsigned seed = 1000; seed < 1300; ++seed) {
    std::mt19937 random(seed);
    compare(mutate(random, generateSection(random, 10 + random() % 200)), seed);
  }
  EXPECT_GT(requests, 20000u);
}

TEST_F(PlainTrusteeDifferentialTest, SectionsLargerThanTheReadAheadRestoreTheSame) {
  // Several MiB, so that the reader compacts its read-ahead buffer along the way.
  for (unsigned seed = 5000; seed < 5003; ++seed) {
    std::mt19937 random(seed);
    std::string doc;
    while (doc.size() < (std::size_t{5} << 19))
      doc += generateFiles(random, 2000, false);
    compare(doc + kSectionEnd, seed);
  }
  EXPECT_GT(requests, 10000u);
}

}  // namespace
