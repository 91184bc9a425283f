// The tag reader over a generated trustee document against the literal window-copying reader.
//   tag_reader_bench DOCUMENT        reads DOCUMENT with both readers as the trustee walker does
//   tag_reader_bench --generate N    writes a document of N trustees to standard output
//   tag_reader_bench --windowed-only DOCUMENT   times the tag reader alone (for profiling)
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include "document/records.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "document/tag_reader_oracle.h"

namespace {

// The rights lists a save writes, by value letters.
struct RightsForm {
  const char *letters;
  const char *elements;
};
constexpr RightsForm kForms[] = {
    {"RF", "<read/><fileScan/>"},
    {"R", "<read/>"},
    {"RWF", "<read/><write/><fileScan/>"},
    {"R", "<read/>"},
    {"R", "<read/>"},
    {"RF", "<read/><fileScan/>"},
    {"R", "<read/>"},
    {"R", "<read/>"},
};

// A document shaped like a save of a real volume: file elements with a CDATA path, one trustee
// each and a second one on every fourth file (every fifth of those an AD trustee), a few rights
// each, and an inherited rights filter on every tenth file. Sized as the issue's figure for a
// volume of 1,000,000 trustees: about 190 bytes and 16 tags a trustee.
void generate(long trustees) {
  std::string chunk;
  std::fputs("<metadata>\n<trusteeInfo>\n", stdout);
  long written = 0;
  for (long file = 0; written < trustees; ++file) {
    char record[1024];
    int length =
        std::snprintf(record, sizeof record,
                      "<file><zid>%ld</zid><path><![CDATA[/project%02ld/user%05ld/"
                      "doc%07ld.txt]]></path>\n",
                      100000000 + (file * 7919 + 12345) % 900000000, file % 37, file / 16, file);
    const long trusteesHere = (file % 4 == 3 && written + 2 <= trustees) ? 2 : 1;
    for (long t = 0; t < trusteesHere; ++t, ++written) {
      const RightsForm &form = kForms[(file + t) % 8];
      if (t == 1 && file % 20 == 3) {
        length += std::snprintf(record + length, sizeof record - length,
                                "<trustee type=\"adID\"><name>staff%03ld</name>"
                                "<id>S-1-5-21-1000-2000-3000-%ld</id><rights value=\"%s\">%s"
                                "</rights></trustee>\n",
                                file % 500, 1000 + file % 500, form.letters, form.elements);
      } else if (t == 1) {
        length += std::snprintf(record + length, sizeof record - length,
                                "<trustee><name>group%03ld.corp.TREE.</name><id></id>"
                                "<rights value=\"%s\">%s</rights></trustee>\n",
                                file % 300, form.letters, form.elements);
      } else {
        length += std::snprintf(record + length, sizeof record - length,
                                "<trustee><name>user%05ld.staff.corp.TREE.</name><id></id>"
                                "<rights value=\"%s\">%s</rights></trustee>\n",
                                file / 16, form.letters, form.elements);
      }
    }
    if (file % 10 == 9)
      length += std::snprintf(record + length, sizeof record - length,
                              "<inheritedRightsFilter value=\"RF\"><read/><fileScan/>"
                              "</inheritedRightsFilter>\n");
    length += std::snprintf(record + length, sizeof record - length, "</file>\n");
    chunk.append(record, static_cast<std::size_t>(length));
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
template <typename ReadContents>
Counts readAll(int (*tagReader)(char *, unsigned long *, const char *),
               ReadContents contentsReader) {
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

// The same through the walkers' own form of the reader, which gives each name's length.
Counts readAllTags() {
  Counts counts;
  Tag tag;
  char text[kPathTextSize];
  while (readTag(tag, "bench") == 0) {
    ++counts.tags;
    if (!tag.isEndTag && (tag.is("path") || tag.is("name"))) {
      if (readContents(text, sizeof text, nullptr) != 0) break;
      counts.textBytes += static_cast<long>(std::strlen(text));
    }
  }
  return counts;
}

// The process's processor time so far (user + system), in seconds: the readers run alone on this
// thread, so the difference of two readings is a reader's own processor time.
double processorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

double secondsSince(double start) { return processorSeconds() - start; }

}  // namespace

int main(int argc, char **argv) {
  if (argc == 3 && std::strcmp(argv[1], "--generate") == 0) {
    generate(std::atol(argv[2]));
    return 0;
  }
  const bool windowedOnly = argc == 3 && std::strcmp(argv[1], "--windowed-only") == 0;
  if (argc != 2 && !windowedOnly) {
    std::fprintf(stderr, "usage: %s DOCUMENT | --windowed-only DOCUMENT | --generate N\n", argv[0]);
    return 2;
  }
  inputFd = open(argv[argc - 1], O_RDONLY);
  if (inputFd < 0) return 1;
  double start = processorSeconds();
  const Counts fast = readAllTags();
  const double fastSeconds = secondsSince(start);
  if (windowedOnly) {
    std::printf("tag reader: %ld tags, %ld text bytes, %.3f s, %.1f ns/tag\n", fast.tags,
                fast.textBytes, fastSeconds, fastSeconds * 1e9 / fast.tags);
    return 0;
  }

  lseek(inputFd, 0, SEEK_SET);
  start = processorSeconds();
  const Counts literal = readAll(oracle::readTag, oracle::readContents);
  const double literalSeconds = secondsSince(start);

  std::printf("tag reader: %ld tags, %ld text bytes\n", fast.tags, fast.textBytes);
  std::printf("  (processor time, user + system)\n");
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
