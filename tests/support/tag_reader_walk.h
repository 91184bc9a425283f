// A seeded walk through a document with a tag reader: the same calls in the same order on any
// reader, with everything each call returns written down, so that the walks of the reader
// and of the window-copying reference can be compared. Used by the differential test and by the
// differential fuzz target.
#pragma once
#include <cstddef>
#include <random>
#include <string>

#include "document/records.h"
#include "document/tag_reader.h"
#include "tag_reader_oracle.h"

namespace testing_support {

struct TagReaderCalls {
  int (*readTag)(char *, unsigned long *, const char *);
  int (*readContents)(char *, std::size_t, bool *);
  int (*goPastEndTag)(const char *);
  void (*getRights)(char *, const char *, std::size_t, bool *);
  void (*reset)();
};

// The reader takes its names as string views; the calls here take them as strings.
inline const TagReaderCalls kReader{
    readTag, readContents, [](const char *name) { return goPastEndTag(name); },
    [](char *out, const char *endName, std::size_t outSize, bool *tooLong) {
      getRights(out, endName, outSize, tooLong);
    },
    resetTagReader};
inline const TagReaderCalls kReferenceReader{oracle::readTag, oracle::readContents,
                                             oracle::goPastEndTag, oracle::getRights,
                                             oracle::resetTagReader};

// Calls the reader in a random but fixed order (seeded) and writes down everything it returns.
// With nearEnds, goPastEndTag is only asked for names that end often in a plain document, so
// that the walk goes through the whole of it.
inline std::string walkTags(const TagReaderCalls &reader, unsigned seed, std::size_t maxCalls,
                            bool nearEnds) {
  std::mt19937 random(seed);
  std::string log;
  char name[kTagNameSize] = "";
  unsigned long isEndTag = 0;
  static constexpr std::size_t kSizes[] = {5, 64, 190, 512, 1024, 4096, 20000};
  std::string text(20000, '\0');
  for (std::size_t call = 0; call < maxCalls; ++call) {
    const unsigned choice = random() % 100;
    if (choice < 70) {
      const int result = reader.readTag(name, &isEndTag, "walk");
      log += "T" + std::to_string(result) + (isEndTag ? "/" : " ") + name + "\n";
      if (result != 0) break;
    } else if (choice < 88) {
      const std::size_t size = kSizes[random() % 7];
      bool tooLong = false;
      const int result = reader.readContents(text.data(), size, &tooLong);
      log += "C" + std::to_string(result) + (tooLong ? "!" : " ") + text.c_str() + "\n";
      if (result != 0) break;
    } else if (choice < 99) {
      const std::size_t size = kSizes[random() % 7];
      bool tooLong = false;
      static const char *const kRightsEnds[] = {"rights", "inheritedRightsFilter", "a", "file"};
      const char *end = kRightsEnds[random() % (nearEnds ? 1 : 4)];
      if (nearEnds && random() % 2 == 0) end = "file";
      reader.getRights(text.data(), end, size, &tooLong);
      log += std::string("R") + (tooLong ? "!" : " ") + text.c_str() + "\n";
    } else {
      // Names the generated documents close now and then, some rarely.
      static const char *const kEnds[] = {"a",        "file", "trustee", "trusteeInfo",
                                          "metadata", "a b",  "rights"};
      static const char *const kNearEnds[] = {"file", "trustee", "name", "rights"};
      const int result =
          reader.goPastEndTag(nearEnds ? kNearEnds[random() % 4] : kEnds[random() % 7]);
      log += "G" + std::to_string(result) + "\n";
      if (result != 0) break;
    }
  }
  return log;
}

}  // namespace testing_support
