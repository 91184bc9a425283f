// The tag reader against the window-copying reference on long documents: the fuzzed bytes are
// set between stretches of plain trustee records long enough that the reader shifts, refills and
// compacts around them, and both readers are walked through the document with the same calls. Any
// difference in what they return stops the fuzzer.
//
//   cmake -S . -B build-fuzz -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang \
//         -DTROVAN_FUZZ=ON -DTROVAN_TESTS=OFF && ninja -C build-fuzz tag_reader_fuzz
//   build-fuzz/fuzz/tag_reader_fuzz -max_total_time=60 -close_fd_mask=2 fuzz/corpus/tag_reader_fuzz
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "document/run_settings.h"
#include "tag_reader_walk.h"

namespace {

// About 10 KB of plain records: more than a window, so that what follows a stretch is read
// with a whole window and more already loaded.
std::string plainStretch(unsigned first) {
  std::string text;
  for (unsigned i = first; text.size() < 10000; ++i)
    text += "<file>\n<zid></zid><path><![CDATA[/d" + std::to_string(i) +
            "]]></path>\n<trustee><name>u" + std::to_string(i) +
            ".corp.T.</name><id></id><rights value=\"RW\"><read/><write/></rights></trustee>\n"
            "</file>\n";
  return text;
}

std::string walkDocument(const testing_support::TagReaderCalls &reader, const std::string &doc,
                         unsigned seed) {
  inputFd = memfd_create("doc", 0);
  if (inputFd < 0 || write(inputFd, doc.data(), doc.size()) != static_cast<ssize_t>(doc.size()))
    std::abort();
  lseek(inputFd, 0, SEEK_SET);
  reader.reset();
  std::string log = testing_support::walkTags(reader, seed, doc.size() + 100, seed % 2 == 0);
  close(inputFd);
  inputFd = 0;
  return log;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  if (size < 1) return 0;
  const unsigned seed = data[0];
  const std::string piece(reinterpret_cast<const char *>(data) + 1, size - 1);
  const std::string doc = "<metadata>\n<trusteeInfo>\n" + plainStretch(0) + piece +
                          plainStretch(1000) + piece + plainStretch(2000) +
                          "</trusteeInfo>\n</metadata>\n";
  if (walkDocument(testing_support::kReader, doc, seed) !=
      walkDocument(testing_support::kReferenceReader, doc, seed))
    __builtin_trap();
  return 0;
}
