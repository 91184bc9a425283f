// Arbitrary info-file bytes through the wrapper cut of the save: it must give the bytes of the
// reply cut.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "channel/admin_channel.h"
#include "save/info_wrapper.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const std::string text(reinterpret_cast<const char *>(data), size);
  const std::size_t length = std::strlen(text.c_str());

  std::vector<char> fast(text.begin(), text.end());
  fast.push_back('\0');
  int fastLength = static_cast<int>(length);
  const char *start = stripInfoWrapper(fast.data(), &fastLength);

  std::vector<char> slow(text.begin(), text.end());
  slow.push_back('\0');
  int slowLength = static_cast<int>(length);
  stripReplyWrapper(slow.data(), &slowLength);

  if (fastLength != slowLength || std::memcmp(start, slow.data(), fastLength) != 0 ||
      start[fastLength] != '\0')
    std::abort();
  return 0;
}
