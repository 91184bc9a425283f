// Arbitrary info-file bytes through the reply-wrapper strip and the filters; small inputs are
// also run through the element-by-element filters, which must give the same bytes.
// Run with -close_fd_mask=2 to keep the filters' messages out of the fuzzer's report.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "channel/admin_channel.h"
#include "info_filters_oracle.h"
#include "save/info_filters.h"

namespace {

struct Result {
  std::string text;
  int length;
  int status;
  std::string scratch;
};

// The first byte picks the filter and its arguments; the rest is the info file.
Result run(bool fast, const std::vector<char> &input, unsigned choice) {
  static const char *const kStartNames[] = {"trustee type=\"adID\"", "trustee",
                                            "user type=\"adID\"", "user",
                                            "abcdefghijklmnopqrstuvwxyz"};
  static const char *const kEndNames[] = {"trustee", "user", "directory", "t"};
  static const char *const kPaths[] = {"/test1", "\\test1", "/", "", "/a"};
  static const char *const kElements[] = {"file", "directory", "trustee", "directoryXY"};
  std::vector<char> text(input);
  text.push_back('\0');
  std::vector<char> scratch(input.size() + 2, '\0');
  int length = static_cast<int>(input.size());
  stripReplyWrapper(text.data(), &length);
  int status = 0;
  if (choice & 1) {
    const char *start = kStartNames[(choice >> 1) % 5];
    const char *end = kEndNames[(choice >> 4) % 4];
    status = fast ? removeElements(text.data(), &length, start, end)
                  : oracle::removeElements(text.data(), &length, start, end);
  } else {
    const char *path = kPaths[(choice >> 1) % 5];
    const char *element = kElements[(choice >> 4) % 4];
    if (fast)
      filterByPath(text.data(), &length, path, scratch.data(), element);
    else
      oracle::filterByPath(text.data(), &length, path, scratch.data(), element);
  }
  return {text.data(), length, status, scratch.data()};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (size < 1 || size > (1u << 20)) return 0;
  const unsigned choice = data[0];
  const std::vector<char> input(reinterpret_cast<const char *>(data) + 1,
                                reinterpret_cast<const char *>(data) + size);
  const Result fast = run(true, input, choice);
  if (input.size() <= 4096) {
    const Result slow = run(false, input, choice);
    if (fast.text != slow.text || fast.length != slow.length || fast.status != slow.status ||
        fast.scratch != slow.scratch)
      std::abort();
  }
  return 0;
}
