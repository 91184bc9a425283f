// Every request sent through the admin channel is assembled here, in requestBuffer, from its
// pieces one after the other: the bytes snprintf(requestBuffer, sizeof requestBuffer,
// "%s%s...", pieces...) would write, cut to kRequestBufferSize - 1 bytes and NUL-terminated.
#pragma once
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <string_view>

#include "channel/admin_channel.h"

// Writes the pieces into requestBuffer and returns the request's length (its strlen). Inline, so
// that the fixed pieces of a request are copied as the constants they are.
inline std::size_t buildRequest(std::initializer_list<std::string_view> pieces) {
  std::size_t length = 0;
  // Unrolled whole, so that the fixed pieces are copied with their sizes known.
#pragma GCC unroll 16
  for (const std::string_view piece : pieces) {
    const std::size_t room = kRequestBufferSize - 1 - length;
    if (piece.size() <= room) [[likely]] {
      std::memcpy(requestBuffer + length, piece.data(), piece.size());
      length += piece.size();
    } else {
      std::memcpy(requestBuffer + length, piece.data(), room);
      length += room;
    }
  }
  requestBuffer[length] = '\0';
  return length;
}
