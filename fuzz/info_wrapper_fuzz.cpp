// Arbitrary info-file bytes, read in pieces, through the wrapper cut of the save: it must give
// the bytes of the reply cut, and report the same end of text.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "channel/admin_channel.h"
#include "save/info_wrapper.h"
#include "save/tag_search.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (size < 2) return 0;
  // The first byte picks the vector width and the size of the pieces; the rest is the file.
  static const int kWidths[] = {64, 32, 16};
  setTagSearchWidth(kWidths[data[0] % 3]);
  const std::size_t piece = 1 + data[0] / 3;
  const std::string text(reinterpret_cast<const char *>(data + 1), size - 1);

  WrapperTagFinder finder;
  std::size_t nul = WrapperTags::kNotFound;
  for (std::size_t at = 0; at < text.size() && nul == WrapperTags::kNotFound; at += piece)
    nul = finder.scan(text.data(), at, std::min(text.size(), at + piece));
  const std::size_t length = nul != WrapperTags::kNotFound ? nul : text.size();
  if (length != std::strlen(text.c_str())) std::abort();

  std::vector<char> fast(text.begin(), text.end());
  fast.push_back('\0');
  int fastLength = static_cast<int>(length);
  const char *start = stripInfoWrapper(fast.data(), &fastLength, finder.found(length));

  std::vector<char> slow(text.begin(), text.end());
  slow.push_back('\0');
  int slowLength = static_cast<int>(length);
  stripReplyWrapper(slow.data(), &slowLength);

  if (fastLength != slowLength || std::memcmp(start, slow.data(), fastLength) != 0 ||
      start[fastLength] != '\0')
    std::abort();
  resetTagSearch();
  return 0;
}
