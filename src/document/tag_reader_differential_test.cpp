// The tag reader against the literal window-copying reference: the same calls on the same
// document give the same tags, texts and results, whether the reader gets the document in
// one piece or through a pipe that delivers it in small chunks of random sizes.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <random>
#include <string>
#include <thread>
#include <utility>

#include "document/records.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "document_mutation.h"
#include "restore_fixture.h"
#include "tag_reader_oracle.h"
#include "tag_reader_walk.h"

using namespace testing_support;

namespace {

const char *const kNames[] = {"metadata", "trusteeInfo", "file",     "path",
                              "trustee",  "name",        "rights",   "inheritedRightsFilter",
                              "a",        "b",           "userInfo", "user"};

std::string randomText(std::mt19937 &random, std::size_t length) {
  static const char kBytes[] = "abc xyz\n\t&;=\"'/>]][!";
  std::string text;
  for (std::size_t i = 0; i < length; ++i)
    text += kBytes[random() % (sizeof kBytes - 1)];
  return text;
}

// A document made of the pieces a Metadata document has, and of the odd ones the reader meets.
std::string generateDocument(std::mt19937 &random, std::size_t pieces) {
  static const char *const kPieces[] = {
      "<metadata>\n", "</metadata>\n", "<trusteeInfo>\n", "</trusteeInfo>\n", "<file>\n",
      "</file>\n", "<zid></zid>", "<path><![CDATA[/dir/a<b&c d]]></path>\n", "<path>p&amp;q</path>",
      "<trustee>", "<trustee type=\"adID\">", "<trustee  type=\"adID\">",
      "<trustee\ttype=\"adID\">", "<trustee type='adID'>", "</trustee>\n",
      "<name>admin.corp.TREE.</name>", "<name/>", "<id>S-1-5-21-1</id>", "<id></id>",
      "<rights value=\"RWF\"><read/><write/><fileScan/></rights>",
      "<inheritedRightsFilter value=\"S\"><supervisor/></inheritedRightsFilter>", "<userInfo>",
      "<user type=\"adID\">", "<quotaAmount>9223372036854775807</quotaAmount>", "<a/>",
      "<a b='/x'>", "</", "<", "/", ">", "]]>", "<![CDATA[", "<![CDATA[x]]>", "<?xml v?>",
      "<!-- c -->", "\n", "  ", "<rights value=\"a/b\">",
      // Attributes across 16-byte blocks, and past 64 bytes.
      "<trustee id=\"0123456789abcdef\" type=\"adID\">",
      "<user x=\"1\"   type=\"adID\"  y=\"2\" type=\"adID\"/>",
      "<rights value=\"RWF\" extra=\"0123456789012345678901234567890123456789012345\">"};
  std::string doc;
  for (std::size_t i = 0; i < pieces; ++i) {
    const unsigned choice = random() % 100;
    if (choice < 80) {
      doc += kPieces[random() % (sizeof kPieces / sizeof kPieces[0])];
    } else if (choice < 88) {
      doc += randomText(random, random() % 64);
    } else if (choice < 91) {
      doc += randomText(random, 7000 + random() % 6000);  // past the window
    } else if (choice < 94) {
      doc += "<![CDATA[";
      for (unsigned n = random() % 3000; n > 0; --n)
        doc += (random() % 4 == 0) ? "<x>" : "ab";
      doc += "]]>";
    } else if (choice < 96) {
      doc += "<" + std::string(60 + random() % 9000, 'n') + ">";  // long names
    } else if (choice < 98) {
      doc += '\0';
    } else {
      doc += std::string("<") + kNames[random() % 12] + std::string(1 + random() % 3, ' ') +
             "type=\"adID\"/>";
    }
  }
  return doc;
}

// Random byte changes, insertions, deletions and a cut at the end.
std::string mutate(std::mt19937 &random, std::string doc) {
  static constexpr char kSpecial[] = "<>/[]!\0 \t\"=";
  return mutateDocument(random, std::move(doc), std::string_view(kSpecial, sizeof kSpecial - 1));
}

class TagReaderDifferentialTest : public testing::Test {
protected:
  void SetUp() override {
    resetProcessState();
    std::signal(SIGPIPE, SIG_IGN);
    // The readers' own messages ("Unable to find end tag") stay out of the test log; their
    // results are in the walk logs.
    std::fflush(stderr);
    savedStderr_ = dup(2);
    const int null = open("/dev/null", O_WRONLY);
    dup2(null, 2);
    close(null);
  }
  void TearDown() override {
    inputFd = 0;
    std::fflush(stderr);
    dup2(savedStderr_, 2);
    close(savedStderr_);
  }

  std::string walkFile(const TagReaderCalls &reader, const std::string &doc, unsigned seed,
                       bool nearEnds = false) {
    // The document in one piece: an in-memory regular file.
    inputFd = memfd_create("doc", 0);
    if (write(inputFd, doc.data(), doc.size()) != static_cast<ssize_t>(doc.size())) return "!";
    lseek(inputFd, 0, SEEK_SET);
    reader.reset();
    std::string log = walkTags(reader, seed, doc.size() + 100, nearEnds);
    close(inputFd);
    calls += static_cast<std::size_t>(std::count(log.begin(), log.end(), '\n'));
    return log;
  }

  std::string walkPipe(const std::string &doc, unsigned seed, bool nearEnds = false) {
    int fds[2];
    if (pipe(fds) != 0) return "pipe failed";
    std::thread writer([&doc, fd = fds[1], seed] {
      std::mt19937 random(seed * 7 + 1);
      for (std::size_t at = 0; at < doc.size();) {
        const std::size_t chunk = std::min<std::size_t>(1 + random() % 700, doc.size() - at);
        const ssize_t written = write(fd, doc.data() + at, chunk);
        if (written <= 0) break;
        at += static_cast<std::size_t>(written);
      }
      close(fd);
    });
    inputFd = fds[0];
    resetTagReader();
    std::string log = walkTags(kReader, seed, doc.size() + 100, nearEnds);
    close(fds[0]);
    writer.join();
    return log;
  }

  void compare(const std::string &doc, unsigned seed, bool viaPipe, bool nearEnds = false) {
    const std::string expected = walkFile(kReferenceReader, doc, seed, nearEnds);
    ASSERT_EQ(walkFile(kReader, doc, seed, nearEnds), expected) << "seed " << seed;
    if (viaPipe) {
      ASSERT_EQ(walkPipe(doc, seed, nearEnds), expected) << "seed " << seed << " (pipe)";
    }
  }

  int savedStderr_ = -1;
  std::size_t calls = 0;
};

TEST_F(TagReaderDifferentialTest, GeneratedDocumentsReadTheSame) {
  for (unsigned seed = 1; seed <= 300; ++seed) {
    std::mt19937 random(seed);
    compare(generateDocument(random, 10 + random() % 400), seed, seed % 3 == 0);
  }
  EXPECT_GT(calls, 20000u);  // the walks went deep into the documents
}

TEST_F(TagReaderDifferentialTest, MutatedDocumentsReadTheSame) {
  for (unsigned seed = 1000; seed < 1500; ++seed) {
    std::mt19937 random(seed);
    compare(mutate(random, generateDocument(random, 10 + random() % 300)), seed, seed % 4 == 0);
  }
  EXPECT_GT(calls, 20000u);
}

TEST_F(TagReaderDifferentialTest, DocumentsLargerThanTheReadAheadReadTheSame) {
  // Several MiB, so that the reader compacts its read-ahead buffer more than once.
  for (unsigned seed = 5000; seed < 5010; ++seed) {
    std::mt19937 random(seed);
    std::string doc;
    while (doc.size() < (std::size_t{3} << 20))
      doc += generateDocument(random, 2000);
    compare(doc, seed, true);
  }
  EXPECT_GT(calls, 10000u);
}

TEST_F(TagReaderDifferentialTest, WellFormedRestoreStreamsReadTheSame) {
  // A plain document read as the restore walkers read it: tags, and texts of the fields.
  std::string doc = "<metadata>\n<trusteeInfo>\n";
  for (int i = 0; i < 20000; ++i)
    doc += "<file>\n<zid></zid><path><![CDATA[/d" + std::to_string(i) +
           "]]></path>\n<trustee><name>u" + std::to_string(i) +
           ".corp.T.</name><id></id><rights value=\"RW\"><read/><write/></rights></trustee>\n"
           "</file>\n";
  doc += "</trusteeInfo>\n</metadata>\n";
  for (unsigned seed = 1; seed <= 3; ++seed)
    compare(doc, seed, true, true);
  EXPECT_GT(calls, 100000u);  // the walks went through the whole document
}

}  // namespace

TEST_F(TagReaderDifferentialTest, LongDocumentsOfOddPiecesReadTheSame) {
  // Long enough that most steps are taken far from the end of the input, with every kind of odd
  // piece met along the way.
  for (unsigned seed = 7000; seed < 7012; ++seed) {
    std::mt19937 random(seed);
    std::string doc = generateDocument(random, 4000);
    if (seed % 2 == 0) doc = mutate(random, doc);
    compare(doc, seed, seed % 3 == 0, true);
  }
  EXPECT_GT(calls, 10000u);
}

TEST_F(TagReaderDifferentialTest, WellFormedStreamsWithOddBytesReadTheSame) {
  // A plain document with NUL bytes, long and odd names, empty elements with attributes and CDATA
  // texts holding ']' or '<' dropped in here and there.
  static const char *const kOdd[] = {std::string_view("\0", 1).data(),
                                     "<abcdefghijklmno>",
                                     "<abcdefghijklmnop>",
                                     "<abcdefghijklmnopqrstuvwxyz01234>",
                                     "<abcdefghijklmnopqrstuvwxyz012345/>",
                                     "<x1-2.3:4>",
                                     "<a b=\"c\"/>",
                                     "<trustee type=\"adID\"/>",
                                     "<read />",
                                     "<path><![CDATA[/a]b]]></path>",
                                     "<path><![CDATA[/a<b]]></path>",
                                     "<path><![CDATA[/a]]>b</path>",
                                     "<path><![CDATA[/a]]>b]]></path>",
                                     "<path><![CDATA[]]></path>",
                                     "<!-- x -->",
                                     "</ >"};
  for (unsigned seed = 1; seed <= 6; ++seed) {
    std::mt19937 random(seed);
    std::string doc = "<metadata>\n<trusteeInfo>\n";
    for (int i = 0; i < 6000; ++i) {
      doc += "<file>\n<zid></zid><path><![CDATA[/d" + std::to_string(i) +
             "]]></path>\n<trustee><name>u" + std::to_string(i) +
             ".corp.T.</name><id></id><rights value=\"RW\"><read/><write/></rights></trustee>\n";
      if (random() % 8 == 0) {
        const std::size_t pick = random() % (sizeof kOdd / sizeof kOdd[0]);
        doc += pick == 0 ? std::string(1, '\0') : std::string(kOdd[pick]);
      }
      doc += "</file>\n";
    }
    doc += "</trusteeInfo>\n</metadata>\n";
    compare(doc, seed, seed % 2 == 0, true);
  }
  EXPECT_GT(calls, 50000u);
}
