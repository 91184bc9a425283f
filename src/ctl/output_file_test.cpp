#include "ctl/output_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "file_text.h"
#include "temp_directory.h"

namespace {

using testing_support::TempDir;

std::string contents(const std::string &path) {
  return testing_support::readFile(path).value_or("");
}

TEST(OutputFile, RenamedOverTheNameOnlyOnCommit) {
  TempDir directory;
  const std::string name = directory.path() + "/out.xml";
  std::ofstream(name) << "previous";
  {
    OutputFile file(name);
    ASSERT_TRUE(file.ok());
    ASSERT_EQ(write(file.fd(), "new", 3), 3);
    EXPECT_EQ(contents(name), "previous");
  }
  EXPECT_EQ(contents(name), "previous");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory.path()),
                          std::filesystem::directory_iterator()),
            1);
  {
    OutputFile file(name);
    ASSERT_EQ(write(file.fd(), "new", 3), 3);
    EXPECT_EQ(file.commit(), 0);
  }
  EXPECT_EQ(contents(name), "new");
}

TEST(OutputFile, AFolderThatIsNotThere) {
  OutputFile file("/nonexistent-folder/out.xml");
  EXPECT_FALSE(file.ok());
  EXPECT_EQ(file.error(), "/nonexistent-folder/out.xml: No such file or directory");
}

// A pipe (as /dev/null or any device) is written in place: a rename would put a plain file
// where it was.
TEST(OutputFile, APipeIsWrittenInPlaceAndStaysAPipe) {
  TempDir directory;
  const std::string name = directory.path() + "/pipe";
  ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
  const int reader = open(name.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  ASSERT_GE(reader, 0);
  {
    OutputFile file(name);
    ASSERT_TRUE(file.ok());
    ASSERT_EQ(write(file.fd(), "doc", 3), 3);
    EXPECT_EQ(file.commit(), 0);
  }
  char text[8] = {};
  EXPECT_EQ(read(reader, text, sizeof text), 3);
  EXPECT_STREQ(text, "doc");
  close(reader);
  struct stat info;
  ASSERT_EQ(stat(name.c_str(), &info), 0);
  EXPECT_TRUE(S_ISFIFO(info.st_mode));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory.path()),
                          std::filesystem::directory_iterator()),
            1);
}

TEST(OutputFile, AFolderAsTheNameIsAnError) {
  TempDir directory;
  OutputFile file(directory.path());
  EXPECT_FALSE(file.ok());
  EXPECT_EQ(file.error(), directory.path() + ": Is a directory");
}

}  // namespace
