// Assembles a request in requestBuffer from its pieces, one after the other: the same bytes as
// snprintf(requestBuffer, sizeof requestBuffer, "%s%s...", pieces...) would write, cut to
// kRequestBufferSize - 1 bytes and NUL-terminated, without a format to interpret.
#pragma once
#include <cstddef>
#include <cstring>
#include <string_view>

#include "channel/admin_channel.h"

class RequestText {
 public:
  RequestText() { requestBuffer[0] = '\0'; }

  // Appends a NUL-terminated piece.
  RequestText &operator<<(const char *piece) {
    append(piece, std::strlen(piece));
    return *this;
  }

  // Appends a piece of known length.
  RequestText &operator<<(std::string_view piece) {
    append(piece.data(), piece.size());
    return *this;
  }

  // Appends a literal: a copy of known size whenever it fits whole.
  template <std::size_t N> RequestText &operator<<(const char (&piece)[N]) {
    constexpr std::size_t count = N - 1;
    if (count <= kRequestBufferSize - 1 - length_) [[likely]] {
      std::memcpy(requestBuffer + length_, piece, count);
      length_ += count;
      requestBuffer[length_] = '\0';
    } else {
      append(piece, count);
    }
    return *this;
  }

  // Appends `count` bytes, or as many as still fit.
  void append(const char *bytes, std::size_t count) {
    const std::size_t room = kRequestBufferSize - 1 - length_;
    if (count > room) count = room;
    std::memcpy(requestBuffer + length_, bytes, count);
    length_ += count;
    requestBuffer[length_] = '\0';
  }

  std::size_t length() const { return length_; }

 private:
  std::size_t length_ = 0;
};
