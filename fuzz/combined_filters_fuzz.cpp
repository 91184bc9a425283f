// Arbitrary info-file bytes through the reply-wrapper strip and the user-type removal and path
// filter decided together; small inputs are also run through the element-by-element removal and
// path filter in turn, which must give the same status, and after a success the same bytes.
// Run with -close_fd_mask=2 to keep the filters' messages out of the fuzzer's report.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "channel/admin_channel.h"
#include "save/combined_filters.h"
#include "save/info_filters_oracle.h"
#include "save/tag_search.h"

namespace {

struct Result {
  std::string text;
  int length;
  int status;
  std::string scratch;
};

// The first byte picks the filters' arguments and the search width; the rest, up to its first
// NUL (where an info file's text ends), is the info file.
Result run(bool together, const std::vector<char> &input, unsigned choice) {
  static const char *const kStartNames[] = {"trustee type=\"adID\"", "trustee", "user", "file"};
  static const char *const kEndNames[] = {"trustee", "user"};
  static const char *const kPaths[] = {"/test1", "/", "", "/test1/a/b"};
  static const char *const kElements[] = {"file", "directory"};
  static const int kWidths[] = {64, 32, 16, 64};
  const char *start = kStartNames[choice % 4];
  const char *end = kEndNames[(choice >> 2) % 2];
  const char *path = kPaths[(choice >> 3) % 4];
  const char *element = kElements[(choice >> 5) % 2];
  setTagSearchWidth(kWidths[(choice >> 6) % 4]);
  std::vector<char> text(input);
  text.push_back('\0');
  std::vector<char> scratch(input.size() + 3, 'x');
  scratch.back() = '\0';
  int length = static_cast<int>(std::strlen(text.data()));
  stripReplyWrapper(text.data(), &length);
  int status = 0;
  if (together) {
    std::size_t left = 0;
    status = removeAndFilterByPath(text.data(), &length, start, end, path, scratch.data(), element,
                                   &left);
    if (status == 0 && left != std::strlen(text.data())) std::abort();
  } else {
    status = oracle::removeElements(text.data(), &length, start, end);
    if (status == 0) oracle::filterByPath(text.data(), &length, path, scratch.data(), element);
  }
  resetTagSearch();
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
    if (fast.status != slow.status) std::abort();
    if (slow.status == 0 &&
        (fast.text != slow.text || fast.length != slow.length || fast.scratch != slow.scratch))
      std::abort();
  }
  return 0;
}
