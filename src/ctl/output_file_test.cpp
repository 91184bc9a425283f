#include "ctl/output_file.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "report_input.h"

namespace {

std::string contents(const std::string &path) {
  std::ifstream file(path);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

TEST(OutputFile, RenamedOverTheNameOnlyOnCommit) {
  TemporaryDirectory directory;
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
