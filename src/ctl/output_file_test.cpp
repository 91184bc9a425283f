#include "ctl/output_file.h"

#include <gtest/gtest.h>
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

}  // namespace
