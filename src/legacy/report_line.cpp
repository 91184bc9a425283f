#include "legacy/report_line.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// Standard input is read in large blocks; a line is the bytes up to the next CR or LF. The result
// is the same as reading one byte per call, but the report is converted in linear time. Reading
// ahead is safe: nothing but the conversion ever reads standard input.
constexpr std::size_t kBlockSize = 64 * 1024;
constexpr std::size_t kLineStep = 80;  // a line buffer starts at 80 bytes and grows in steps of 80

char block[kBlockSize];
std::size_t blockStart = 0;
std::size_t blockEnd = 0;
// Lines ended so far (CR LF counts once), and whether the last line end seen was a CR.
unsigned long lineEnds = 0;
bool afterCr = false;
unsigned long lastLineStart = 0;

// Refills the block when it is used up. False once a read returns 0 or less.
bool haveInput() {
  if (blockStart < blockEnd) return true;
  const ssize_t got = read(0, block, sizeof block);
  if (got <= 0) return false;
  blockStart = 0;
  blockEnd = static_cast<std::size_t>(got);
  return true;
}

bool isLineEnd(char c) { return c == '\n' || c == '\r'; }

void countLineEnd(char c) {
  if (c == '\r' || !afterCr) ++lineEnds;
  afterCr = c == '\r';
}

// Capacity for `needed` bytes: a multiple of the step, at least doubling so growth stays linear.
std::size_t grownCapacity(std::size_t capacity, std::size_t needed) {
  std::size_t wanted = capacity * 2 > needed ? capacity * 2 : needed;
  return (wanted + kLineStep - 1) / kLineStep * kLineStep;
}

char *noBuffer(char *line) {
  std::fprintf(stderr, "Error getting enough buffer for reading input file\n");
  std::free(line);
  return nullptr;
}

}  // namespace

char *readReportLine() {
  for (;;) {
    if (!haveInput()) return nullptr;
    if (!isLineEnd(block[blockStart])) break;
    countLineEnd(block[blockStart]);
    ++blockStart;
  }
  lastLineStart = lineEnds + 1;
  afterCr = false;
  std::size_t capacity = kLineStep;
  char *line = static_cast<char *>(std::calloc(capacity, 1));
  if (line == nullptr) return noBuffer(nullptr);
  std::size_t length = 0;
  do {
    std::size_t stop = blockStart;
    while (stop < blockEnd && !isLineEnd(block[stop]))
      ++stop;
    const std::size_t count = stop - blockStart;
    // Room for the bytes and the terminating NUL.
    if (length + count + 1 > capacity) {
      const std::size_t newCapacity = grownCapacity(capacity, length + count + 1);
      char *grown = static_cast<char *>(std::realloc(line, newCapacity));
      if (grown == nullptr) return noBuffer(line);
      line = grown;
      capacity = newCapacity;
    }
    std::memcpy(line + length, block + blockStart, count);
    length += count;
    blockStart = stop;
    if (stop < blockEnd) {
      countLineEnd(block[blockStart]);
      ++blockStart;  // the line end is consumed, not stored
      break;
    }
  } while (haveInput());
  line[length] = '\0';
  return line;
}

unsigned long reportLineStart() { return lastLineStart; }

void resetReportInput() {
  blockStart = 0;
  blockEnd = 0;
  lineEnds = 0;
  afterCr = false;
  lastLineStart = 0;
}
