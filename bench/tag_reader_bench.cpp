// The tag reader over a generated trustee document against the literal window-copying reader.
//   tag_reader_bench DOCUMENT        reads DOCUMENT with both readers as the trustee walker does
//   tag_reader_bench --generate N    writes a document of N trustees to standard output
#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "document/records.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "document/tag_reader_oracle.h"

namespace {

void generate(long trustees) {
  std::string chunk;
  std::fputs("<metadata>\n<trusteeInfo>\n", stdout);
  for (long i = 0; i < trustees; ++i) {
    char record[512];
    std::snprintf(record, sizeof record,
                  "<file><zid>%ld</zid><path><![CDATA[/d%04ld/f%07ld]]></path>\n"
                  "<trustee><name>user%07ld.ou=staff.o=corp.TREE.</name><id></id>"
                  "<rights value=\"RWCEMF\"><read/><write/><create/><erase/><modify/>"
                  "<fileScan/></rights></trustee>\n</file>\n",
                  i * 7919 % 1000000007, i / 1000, i, i);
    chunk += record;
    if (chunk.size() > (1 << 20)) {
      std::fwrite(chunk.data(), 1, chunk.size(), stdout);
      chunk.clear();
    }
  }
  std::fwrite(chunk.data(), 1, chunk.size(), stdout);
  std::fputs("</trusteeInfo>\n</metadata>\n", stdout);
}

struct Counts {
  long tags = 0;
  long textBytes = 0;
};

// Reads every tag, and the texts of path and name, as the trustee walker does.
template <typename ReadTag, typename ReadContents>
Counts readAll(ReadTag tagReader, ReadContents contentsReader) {
  Counts counts;
  char name[kTagNameSize] = "";
  char text[kPathTextSize];
  unsigned long isEndTag = 0;
  while (tagReader(name, &isEndTag, "bench") == 0) {
    ++counts.tags;
    if (!isEndTag && (std::strcmp(name, "path") == 0 || std::strcmp(name, "name") == 0)) {
      if (contentsReader(text, sizeof text, nullptr) != 0) break;
      counts.textBytes += static_cast<long>(std::strlen(text));
    }
  }
  return counts;
}

double secondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

int main(int argc, char **argv) {
  if (argc == 3 && std::strcmp(argv[1], "--generate") == 0) {
    generate(std::atol(argv[2]));
    return 0;
  }
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s DOCUMENT | --generate N\n", argv[0]);
    return 2;
  }
  inputFd = open(argv[1], O_RDONLY);
  if (inputFd < 0) return 1;
  auto start = std::chrono::steady_clock::now();
  const Counts fast = readAll(readTag, readContents);
  const double fastSeconds = secondsSince(start);

  lseek(inputFd, 0, SEEK_SET);
  start = std::chrono::steady_clock::now();
  const Counts literal = readAll(oracle::readTag, oracle::readContents);
  const double literalSeconds = secondsSince(start);

  std::printf("tag reader: %ld tags, %ld text bytes\n", fast.tags, fast.textBytes);
  std::printf("  windowed reader      %8.3f s  %7.1f ns/tag\n", fastSeconds,
              fastSeconds * 1e9 / fast.tags);
  std::printf("  window-copying ref.  %8.3f s  %7.1f ns/tag\n", literalSeconds,
              literalSeconds * 1e9 / literal.tags);
  std::printf("  speed-up             %8.1fx (target >= 25x)\n", literalSeconds / fastSeconds);
  if (fast.tags != literal.tags || fast.textBytes != literal.textBytes) {
    std::printf("  MISMATCH: the reference read %ld tags, %ld text bytes\n", literal.tags,
                literal.textBytes);
    return 1;
  }
  return 0;
}
