#include "save/rxl_import.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "console_test_support.h"

namespace {

using testing_support::TempDir;
using testing_support::writeFile;

constexpr char kOpen[] = "<trusteeInfo>\n";
constexpr char kClose[] = "</trusteeInfo>";  // written without its line end

constexpr char kAdminEntry[] =
    "<trustee path=\"/dir/a\"><name>admin.org</name><rights>RWF</rights>"
    "<object_guid>0123abcd-0000-1111-2222-333344445555</object_guid></trustee>\n";
constexpr char kAdminRecord[] =
    "<file>\n<zid></zid><path>/dir/a</path>\n"
    "<trustee><name>admin.org</name><id>0123abcd-0000-1111-2222-333344445555</id>"
    "<rights value=\"rwf\"><read/><write/><fileScan/></rights></trustee>\n</file>\n";

// The same entry with its five elements on five lines.
constexpr char kAdminEntryOnFiveLines[] =
    "<trustee path=\"/dir/a\">\n"
    "  <name>admin.org</name>\n"
    "  <rights>RWF</rights>\n"
    "  <object_guid>0123abcd-0000-1111-2222-333344445555</object_guid>\n"
    "</trustee>\n";

std::string trusteeEntry(const std::string &path, const std::string &name,
                         const std::string &rights, const std::string &id) {
  return "<trustee path=\"" + path + "\"><name>" + name + "</name><rights>" + rights +
         "</rights><object_guid>" + id + "</object_guid></trustee>\n";
}
std::string filterEntry(const std::string &path, const std::string &rights) {
  return "<inherited_rights_mask path=\"" + path + "\"><rights>" + rights +
         "</rights></inherited_rights_mask>\n";
}
std::string trusteeRecord(const std::string &path, const std::string &name, const std::string &id,
                          const std::string &letters, const std::string &elements) {
  return "<file>\n<zid></zid><path>" + path + "</path>\n<trustee><name>" + name + "</name><id>" +
         id + "</id><rights value=\"" + letters + "\">" + elements +
         "</rights></trustee>\n</file>\n";
}
std::string filterRecord(const std::string &path, const std::string &letters,
                         const std::string &elements) {
  return "<file>\n<zid></zid><path>" + path + "</path>\n<inheritedRightsFilter value=\"" + letters +
         "\">" + elements + "</inheritedRightsFilter>\n</file>\n";
}
std::string section(const std::string &records) { return kOpen + records + kClose; }

class RxlImport : public testing::Test {
protected:
  void SetUp() override {
    resetRxlImportScanner();
    ASSERT_FALSE(dir_.path().empty());
  }

  // Imports `bytes` as the RXL trustee file; the section lands in out_, messages in err_.
  int import(const std::string &bytes, const char *pathFilter = nullptr) {
    const std::string name = dir_.file("trustee_database.xml");
    writeFile(name, bytes);
    return importFile(name.c_str(), pathFilter);
  }
  int importFile(const char *name, const char *pathFilter = nullptr) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int result = importRxlTrusteeFile(name, pathFilter);
    err_ = testing::internal::GetCapturedStderr();
    out_ = testing::internal::GetCapturedStdout();
    return result;
  }
  // Scans each text as one block, in turn, with the scanner's state carried between them.
  void scanBlocks(const std::vector<std::string> &blocks, const char *pathFilter = nullptr) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    for (const std::string &text : blocks) {
      std::vector<char> block(text.begin(), text.end());
      block.push_back('#');  // the scanner puts its terminator here
      parseRxlTrusteeBlock(block.data(), static_cast<int>(text.size()), pathFilter);
    }
    err_ = testing::internal::GetCapturedStderr();
    out_ = testing::internal::GetCapturedStdout();
  }

  TempDir dir_;
  std::string out_;
  std::string err_;
};

constexpr char kHeader[] = "<?xml version=\"1.0\"?>\n<volume_trustees>\n";
constexpr char kFooter[] = "</volume_trustees>\n";

TEST_F(RxlImport, TrusteeEntryGivesItsRecordByteForByte) {
  EXPECT_EQ(import(std::string(kHeader) + kAdminEntry + kFooter), 0);
  EXPECT_EQ(out_, section(kAdminRecord));
  EXPECT_EQ(err_, "");
}

TEST_F(RxlImport, RightsRwfGiveLettersAndElements) {
  EXPECT_EQ(import(trusteeEntry("/x", "u.org", "RWF", "g")), 0);
  EXPECT_NE(out_.find("<rights value=\"rwf\"><read/><write/><fileScan/></rights>"),
            std::string::npos);
  EXPECT_EQ(out_, section(trusteeRecord("/x", "u.org", "g", "rwf", "<read/><write/><fileScan/>")));
}

TEST_F(RxlImport, FilterEntryGivesItsRecordByteForByte) {
  EXPECT_EQ(import(std::string(kHeader) + filterEntry("/dir", "SRWCEMFA") + kFooter), 0);
  EXPECT_EQ(out_, "<trusteeInfo>\n<file>\n<zid></zid><path>/dir</path>\n"
                  "<inheritedRightsFilter value=\"srwcemfa\"><supervisor/><read/><write/><create/>"
                  "<erase/><modify/><fileScan/><accessControl/></inheritedRightsFilter>\n</file>\n"
                  "</trusteeInfo>");
  EXPECT_EQ(err_, "");
}

TEST_F(RxlImport, EntryOnFiveLinesGivesTheSameRecordAsOnOneLine) {
  EXPECT_EQ(import(std::string(kHeader) + kAdminEntryOnFiveLines + kFooter), 0);
  EXPECT_EQ(out_, section(kAdminRecord));
  EXPECT_EQ(err_, "");
}

TEST_F(RxlImport, EntryOnFiveLinesScannedAsFiveBlocksGivesTheSameRecord) {
  scanBlocks(
      {"<trustee path=\"/dir/a\">\n", "  <name>admin.org</name>\n", "  <rights>RWF</rights>\n",
       "  <object_guid>0123abcd-0000-1111-2222-333344445555</object_guid>\n", "</trustee>\n"});
  EXPECT_EQ(out_, kAdminRecord);
  EXPECT_EQ(err_, "");
}

// Lines without any '<' before the entry move the chunk boundary of the 8,192-byte reads to each
// position inside the entry in turn.
std::string paddedTo(std::size_t padding, const std::string &entry) {
  std::string bytes;
  while (bytes.size() + 64 <= padding)
    bytes += std::string(63, ' ') + "\n";
  bytes += std::string(padding - bytes.size(), '\n');
  return bytes + entry + kFooter;
}

TEST_F(RxlImport, EntryOnOneLineSplitOverReadsAtEveryPositionGivesTheSameRecord) {
  const std::string entry = kAdminEntry;
  for (std::size_t at = 0; at <= entry.size(); ++at) {
    resetRxlImportScanner();
    EXPECT_EQ(import(paddedTo(8192 - at, entry)), 0) << "split at " << at;
    EXPECT_EQ(out_, section(kAdminRecord)) << "split at " << at;
    EXPECT_EQ(err_, "") << "split at " << at;
  }
}

TEST_F(RxlImport, EntryOnFiveLinesSplitOverReadsAtEveryPositionGivesTheSameRecord) {
  const std::string entry = kAdminEntryOnFiveLines;
  for (std::size_t at = 0; at <= entry.size(); ++at) {
    resetRxlImportScanner();
    EXPECT_EQ(import(paddedTo(8192 - at, entry)), 0) << "split at " << at;
    EXPECT_EQ(out_, section(kAdminRecord)) << "split at " << at;
    EXPECT_EQ(err_, "") << "split at " << at;
  }
}

TEST_F(RxlImport, ManyEntriesOverManyReadsAllComeOutInOrder) {
  std::string bytes = kHeader;
  std::string records;
  for (int i = 0; i < 500; ++i) {
    const std::string path = "/d/f" + std::to_string(i);
    if (i % 3 == 0) {
      bytes += filterEntry(path, "RF");
      records += filterRecord(path, "rf", "<read/><fileScan/>");
    } else {
      bytes +=
          trusteeEntry(path, "user" + std::to_string(i) + ".org", "W", "id" + std::to_string(i));
      records += trusteeRecord(path, "user" + std::to_string(i) + ".org", "id" + std::to_string(i),
                               "w", "<write/>");
    }
  }
  ASSERT_GT(bytes.size(), 3u * 8192u);
  EXPECT_EQ(import(bytes + kFooter), 0);
  EXPECT_EQ(out_, section(records));
  EXPECT_EQ(err_, "");
}

TEST_F(RxlImport, PathFilterIsAPlainPrefixTest) {
  const std::string bytes = std::string(kHeader) + trusteeEntry("/home/a", "a.org", "R", "1") +
                            trusteeEntry("/homework", "b.org", "R", "2") +
                            trusteeEntry("/data/home", "c.org", "R", "3") +
                            filterEntry("/data/home/x", "R") + filterEntry("/home", "W") +
                            trusteeEntry("", "d.org", "R", "4") + kFooter;
  EXPECT_EQ(import(bytes, "/home"), 0);
  EXPECT_EQ(out_, section(trusteeRecord("/home/a", "a.org", "1", "r", "<read/>") +
                          trusteeRecord("/homework", "b.org", "2", "r", "<read/>") +
                          filterRecord("/home", "w", "<write/>") +
                          trusteeRecord("", "d.org", "4", "r", "<read/>")));
  EXPECT_EQ(err_, "");
}

TEST_F(RxlImport, FileWithNoEntryGivesAnEmptySectionAndOneDidNotFindMessage) {
  EXPECT_EQ(import(std::string(kHeader) + kFooter), 0);
  EXPECT_EQ(out_, "<trusteeInfo>\n</trusteeInfo>");
  EXPECT_EQ(err_, "XML parsing error in RXL trustee file: Did not find <trustee path=\" or "
                  "<inherited_rights_mask path=\".\n");
}

TEST_F(RxlImport, FileWithOnlyTheClosingRootGivesAnEmptySectionSilently) {
  EXPECT_EQ(import("</volume_trustees>\n"), 0);
  EXPECT_EQ(out_, "<trusteeInfo>\n</trusteeInfo>");
  EXPECT_EQ(err_, "");
}

TEST_F(RxlImport, EmptyFileGivesAnEmptySection) {
  EXPECT_EQ(import(""), 0);
  EXPECT_EQ(out_, "<trusteeInfo>\n</trusteeInfo>");
  EXPECT_EQ(err_, "");
}

TEST_F(RxlImport, WhateverPrecedesTheFirstEntryIsSkippedSilently) {
  EXPECT_EQ(import(std::string(kHeader) + "<comment>x</comment>\n" + kAdminEntry + kFooter), 0);
  EXPECT_EQ(out_, section(kAdminRecord));
  EXPECT_EQ(err_, "");
}

TEST_F(RxlImport, LineLongerThanTheCarryBufferEndsTheImportWithMinusTwo) {
  const std::string longLine = std::string(32768, 'x') + "\n";
  EXPECT_EQ(import(std::string(kHeader) + kAdminEntry + longLine + kAdminEntry + kFooter), -2);
  EXPECT_EQ(out_, section(kAdminRecord));
  EXPECT_EQ(err_, "Saved line that was too long to process\n");
}

TEST_F(RxlImport, LongLineWithoutLineEndEndsTheImportWithMinusTwo) {
  EXPECT_EQ(import(std::string(40000, 'x')), -2);
  EXPECT_EQ(out_, section(""));
  EXPECT_EQ(err_, "Saved line that was too long to process\n");
}

TEST_F(RxlImport, LineOfExactly32768BytesIsAccepted) {
  // The entry's line is padded with blanks to 32,767 bytes and its line end.
  std::string line = kAdminEntry;
  line.pop_back();
  line += std::string(32767 - line.size(), ' ') + "\n";
  ASSERT_EQ(line.size(), 32768u);
  EXPECT_EQ(import(line + kFooter), 0);
  EXPECT_EQ(out_, section(kAdminRecord));
  EXPECT_EQ(err_, "");
}

TEST_F(RxlImport, FinalLineWithoutLineEndIsScannedWithItsOwnLength) {
  std::string last = trusteeEntry("/z", "z.org", "M", "9");
  last.pop_back();
  EXPECT_EQ(import(std::string(kHeader) + kAdminEntry + last), 0);
  EXPECT_EQ(out_, section(kAdminRecord + trusteeRecord("/z", "z.org", "9", "m", "<modify/>")));
  EXPECT_EQ(err_, "");
}

TEST_F(RxlImport, UnopenableFileWritesNoSectionAndReturnsMinusOne) {
  const std::string missing = dir_.file("missing.xml");
  EXPECT_EQ(importFile(missing.c_str()), -1);
  EXPECT_EQ(out_, "");
  EXPECT_EQ(err_, "Unable to open " + missing + ".  err=No such file or directory\n");
}

TEST_F(RxlImport, ReadErrorEndsTheSectionAndReturnsErrno) {
  EXPECT_EQ(importFile(dir_.path().c_str()), EISDIR);
  EXPECT_EQ(out_, section(""));
  EXPECT_EQ(err_, "Error Is a directory reading information from " + dir_.path() + "\n");
}

TEST_F(RxlImport, UnwritableOutputBeforeTheSectionReturnsErrno) {
  const std::string name = dir_.file("t.xml");
  writeFile(name, kAdminEntry);
  std::fflush(stdout);
  const int saved = dup(1);
  const int readOnly = open("/dev/null", O_RDONLY);
  dup2(readOnly, 1);
  close(readOnly);
  testing::internal::CaptureStderr();
  const int result = importRxlTrusteeFile(name.c_str(), nullptr);
  err_ = testing::internal::GetCapturedStderr();
  dup2(saved, 1);
  close(saved);
  EXPECT_EQ(result, EBADF);
  EXPECT_EQ(err_, "Error Bad file descriptor writing to output file\n");
}

TEST_F(RxlImport, RightsTextOf33CharactersIsRejectedAndTheRestOfTheBlockSkipped) {
  const std::string rights33(33, 'R');
  EXPECT_EQ(import(trusteeEntry("/a", "a.org", rights33, "1") + kAdminEntry + kFooter), 0);
  EXPECT_EQ(out_, section(""));
  EXPECT_EQ(err_, "XML parsing error in RXL trustee file: Rights entry too long.\n");
}

TEST_F(RxlImport, LimitsAreInclusive) {
  const std::string path(4096, 'p');
  const std::string name(768, 'n');
  const std::string rights(32, 'W');
  const std::string id(36, 'i');
  EXPECT_EQ(import(trusteeEntry(path, name, rights, id)), 0);
  EXPECT_EQ(err_, "");
  std::string elements;
  while (elements.size() + 8 < 256)
    elements += "<write/>";
  EXPECT_EQ(out_, section(trusteeRecord(path, name, id, std::string(32, 'w'), elements)));
}

struct TooLong {
  const char *test;
  std::string entry;
  const char *message;
};

TEST_F(RxlImport, OneCharacterOverALimitIsRejectedWithItsMessage) {
  const TooLong cases[] = {
      {"path", trusteeEntry(std::string(4097, 'p'), "n", "R", "i"), "Path name too long."},
      {"filter path", filterEntry(std::string(4097, 'p'), "R"), "Path name too long."},
      {"name", trusteeEntry("/p", std::string(769, 'n'), "R", "i"), "User name too long."},
      {"rights", trusteeEntry("/p", "n", std::string(33, 'R'), "i"), "Rights entry too long."},
      {"id", trusteeEntry("/p", "n", "R", std::string(37, 'i')), "ID entry too long."},
  };
  for (const TooLong &c : cases) {
    resetRxlImportScanner();
    EXPECT_EQ(import(c.entry), 0) << c.test;
    EXPECT_EQ(out_, section("")) << c.test;
    EXPECT_EQ(err_, std::string("XML parsing error in RXL trustee file: ") + c.message + "\n")
        << c.test;
  }
}

struct Damaged {
  const char *test;
  std::string block;
  const char *message;
};

TEST_F(RxlImport, EveryParseMessage) {
  const char *prefix = "XML parsing error in RXL trustee file";
  const Damaged cases[] = {
      {"no path end", "<trustee path=\"/a\n", ": Bad <trustee> element.\n"},
      {"no filter path end", "<inherited_rights_mask path=\"/a\n", ": Bad <trustee> element.\n"},
      {"no name", "<trustee path=\"/a\"><rights>R</rights>\n", ": Did not find <name>\n"},
      {"bad name", "<trustee path=\"/a\"><name>a.org<rights>R</rights>\n",
       ": Bad <name> element.\n"},
      {"no rights", "<trustee path=\"/a\"><name>a</name><object_guid>",
       ": Did not find <rights>\n"},
      {"bad rights", "<inherited_rights_mask path=\"/a\"><rights>R</inherited_rights_mask>\n",
       ": Bad <rights> element.\n"},
      {"no id", "<trustee path=\"/a\"><name>a</name><rights>R</rights></trustee>\n",
       ": Did not find <object_guid>\n"},
      {"bad id", "<trustee path=\"/a\"><name>a</name><rights>R</rights><object_guid>1</trustee>",
       ": Bad <object_guid> element.\n"},
      {"no trustee end",
       "<trustee path=\"/a\"><name>a</name><rights>R</rights><object_guid>1</object_guid><x>",
       ": Did not find </trustee>\n"},
      {"no filter end", "<inherited_rights_mask path=\"/a\"><rights>R</rights><x>",
       ": Did not find </inherited_rights_mask>\n"},
      {"unknown element", "<volume>\n",
       ": Did not find <trustee path=\" or "
       "<inherited_rights_mask path=\".\n"},
  };
  for (const Damaged &c : cases) {
    resetRxlImportScanner();
    scanBlocks({c.block});
    EXPECT_EQ(out_, "") << c.test;
    EXPECT_EQ(err_, std::string(prefix) + c.message) << c.test;
  }
}

TEST_F(RxlImport, SkippedEntryWithoutItsClosingTagHasAMessageOfItsOwn) {
  scanBlocks({"<trustee path=\"/data\"><name>a</name><rights>R</rights><object_guid>1"
              "</object_guid><x>\n"},
             "/home");
  EXPECT_EQ(out_, "");
  EXPECT_EQ(err_, "XML parsing error in RXL trustee file\n");
}

TEST_F(RxlImport, ParseErrorMovesTheStateOnAndTheNextBlockContinuesTheDamagedEntry) {
  // The name is too long; the state has already moved to "expecting rights", so the next
  // block's rights, identifier and closing tag complete the damaged entry, with an empty name.
  scanBlocks({"<trustee path=\"/a\"><name>" + std::string(769, 'n') + "</name>\n" +
                  trusteeEntry("/lost", "lost.org", "R", "0"),
              trusteeEntry("/b", "b.org", "W", "2")});
  EXPECT_EQ(out_, trusteeRecord("/a", "", "2", "w", "<write/>"));
  EXPECT_EQ(err_, "XML parsing error in RXL trustee file: User name too long.\n");
}

TEST_F(RxlImport, ScanEndsWhenNoOpeningBracketIsLeft) {
  scanBlocks(
      {"<inherited_rights_mask path=\"/a\"><rights>R</rights>  \n", "</inherited_rights_mask>\n"});
  EXPECT_EQ(out_, filterRecord("/a", "r", "<read/>"));
  EXPECT_EQ(err_, "");
}

TEST_F(RxlImport, RightsLettersThatAreNoRightsAreReportedAndSkipped) {
  EXPECT_EQ(import(filterEntry("/a", "Rv")), 0);
  EXPECT_EQ(out_, section(filterRecord("/a", "r", "<read/>")));
  EXPECT_EQ(err_, "Ignoring \"v\" during rights conversion\n");
}

TEST_F(RxlImport, OutputHasNoIndentationAndNoEscapingBeyondTheFile) {
  EXPECT_EQ(import("    " + trusteeEntry("/a&amp;b c", "x<y&z", "R", "<>") + kFooter), 0);
  EXPECT_EQ(out_, section(trusteeRecord("/a&amp;b c", "x<y&z", "<>", "r", "<read/>")));
  EXPECT_EQ(err_, "");
}

TEST_F(RxlImport, BlockTextEndsAtANulByte) {
  const std::string entry = trusteeEntry("/a", "a", "R", "1");
  scanBlocks({entry + std::string(1, '\0') + entry});
  EXPECT_EQ(out_, trusteeRecord("/a", "a", "1", "r", "<read/>"));
}

}  // namespace
