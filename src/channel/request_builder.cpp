#include "channel/request_builder.h"

#include <cstring>

#include "channel/admin_channel.h"

std::size_t buildRequest(std::initializer_list<std::string_view> pieces) {
  std::size_t length = 0;
  for (const std::string_view piece : pieces) {
    const std::size_t room = kRequestBufferSize - 1 - length;
    const std::size_t count = piece.size() < room ? piece.size() : room;
    std::memcpy(requestBuffer + length, piece.data(), count);
    length += count;
  }
  requestBuffer[length] = '\0';
  return length;
}
