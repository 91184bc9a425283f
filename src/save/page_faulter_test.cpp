#include "save/page_faulter.h"

#include <sys/mman.h>

#include <gtest/gtest.h>

#include <cstring>

namespace {

struct Mapping {
  explicit Mapping(std::size_t size)
      : size(size),
        data(static_cast<char *>(
            mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))) {}
  ~Mapping() {
    if (data != MAP_FAILED) munmap(data, size);
  }
  std::size_t size;
  char *data;
};

TEST(PageFaulter, BufferFilledWhileItsPagesAreFaultedInKeepsEveryByte) {
  Mapping buffer(48 << 20);
  ASSERT_NE(buffer.data, MAP_FAILED);
  PageFaulter faulter;
  faulter.start(buffer.data, buffer.size, false);
  // Filled from the start while the other thread works through the same pages.
  for (std::size_t at = 0; at < buffer.size; at += 4096)
    std::memset(buffer.data + at, static_cast<int>('a' + at / 4096 % 26), 4096);
  faulter.stop();
  for (std::size_t at = 0; at < buffer.size; at += 4096) {
    ASSERT_EQ(buffer.data[at], static_cast<char>('a' + at / 4096 % 26)) << at;
    ASSERT_EQ(buffer.data[at + 4095], static_cast<char>('a' + at / 4096 % 26)) << at;
  }
}

TEST(PageFaulter, FaultedPagesReadAsZeroes) {
  Mapping buffer(16 << 20);
  ASSERT_NE(buffer.data, MAP_FAILED);
  {
    PageFaulter faulter;
    faulter.start(buffer.data, buffer.size, false);
  }  // the destructor waits for the thread
  for (std::size_t at = 0; at < buffer.size; at += 4096) ASSERT_EQ(buffer.data[at], '\0') << at;
}

TEST(PageFaulter, StartOnlyWhenAProcessorIsIdleLeavesTheBufferAsFilled) {
  // Whether the thread starts depends on the machine's load; the buffer is the same either way.
  Mapping buffer(8 << 20);
  ASSERT_NE(buffer.data, MAP_FAILED);
  PageFaulter faulter;
  faulter.start(buffer.data, buffer.size);
  for (std::size_t at = 0; at < buffer.size; at += 4096) buffer.data[at] = 'q';
  faulter.stop();
  for (std::size_t at = 0; at < buffer.size; at += 4096) {
    ASSERT_EQ(buffer.data[at], 'q') << at;
    ASSERT_EQ(buffer.data[at + 1], '\0') << at;
  }
}

TEST(PageFaulter, StopWithoutStartAndTwiceIsHarmless) {
  PageFaulter idle;
  idle.stop();
  Mapping buffer(1 << 20);
  ASSERT_NE(buffer.data, MAP_FAILED);
  PageFaulter faulter;
  faulter.start(buffer.data, buffer.size, false);
  faulter.stop();
  faulter.stop();
  buffer.data[0] = 'x';
  EXPECT_EQ(buffer.data[0], 'x');
}

}  // namespace
