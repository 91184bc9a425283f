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

namespace request_text_detail {

template <std::size_t N> constexpr std::size_t pieceSize(const char (&)[N]) { return N - 1; }
inline std::size_t pieceSize(std::string_view piece) { return piece.size(); }

template <std::size_t N> inline char *copyPiece(char *at, const char (&piece)[N]) {
  std::memcpy(at, piece, N - 1);
  return at + N - 1;
}
inline char *copyPiece(char *at, std::string_view piece) {
  std::memcpy(at, piece.data(), piece.size());
  return at + piece.size();
}

}  // namespace request_text_detail

// Assembles a request from its pieces (literals and string_views) in requestBuffer: the bytes
// RequestText gives for the same pieces. The room is checked once for the whole request, and
// when it fits (as every request built from a document's fields does) the pieces are copied one
// after the other without a check or a terminator each. Returns the request's length.
template <typename... Pieces> std::size_t buildRequest(const Pieces &...pieces) {
  using request_text_detail::copyPiece;
  using request_text_detail::pieceSize;
  const std::size_t total = (pieceSize(pieces) + ...);
  if (total < kRequestBufferSize) [[likely]] {
    char *at = requestBuffer;
    ((at = copyPiece(at, pieces)), ...);
    *at = '\0';
    return total;
  }
  RequestText request;
  (request << ... << pieces);
  return request.length();
}
