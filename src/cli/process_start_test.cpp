#include "cli/process_start.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// In a child with `closed` closed: each of 0, 1 and 2 is open afterwards, the closed ones on
// /dev/null, and the next descriptor opened is none of them. Exit status 0 when all holds.
int childWithClosed(std::initializer_list<int> closed) {
  std::fflush(stdout);
  std::fflush(stderr);
  const pid_t child = fork();
  if (child == 0) {
    for (const int fd : closed)
      close(fd);
    if (!ensureStandardDescriptors()) _exit(1);
    struct stat null;
    if (stat("/dev/null", &null) != 0) _exit(2);
    for (const int fd : closed) {
      struct stat info;
      if (fstat(fd, &info) != 0 || info.st_rdev != null.st_rdev || !S_ISCHR(info.st_mode)) _exit(3);
    }
    const int next = open("/dev/null", O_RDONLY);
    _exit(next > STDERR_FILENO ? 0 : 4);
  }
  int status = -1;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(StandardDescriptors, AClosedStandardOutputIsOpenedOnDevNull) {
  EXPECT_EQ(childWithClosed({1}), 0);
}

TEST(StandardDescriptors, AClosedStandardErrorIsOpenedOnDevNull) {
  EXPECT_EQ(childWithClosed({2}), 0);
}

TEST(StandardDescriptors, AllThreeClosedAreAllOpened) { EXPECT_EQ(childWithClosed({0, 1, 2}), 0); }

TEST(StandardDescriptors, OpenOnesAreLeftAsTheyAre) {
  struct stat before;
  ASSERT_EQ(fstat(1, &before), 0);
  EXPECT_TRUE(ensureStandardDescriptors());
  struct stat after;
  ASSERT_EQ(fstat(1, &after), 0);
  EXPECT_EQ(before.st_ino, after.st_ino);
  EXPECT_EQ(before.st_dev, after.st_dev);
}

}  // namespace
