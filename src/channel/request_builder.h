// Every request sent through the admin channel is assembled here, in requestBuffer, from its
// pieces one after the other: the bytes snprintf(requestBuffer, sizeof requestBuffer,
// "%s%s...", pieces...) would write, cut to kRequestBufferSize - 1 bytes and NUL-terminated.
#pragma once
#include <cstddef>
#include <initializer_list>
#include <string_view>

// Writes the pieces into requestBuffer and returns the request's length (its strlen).
std::size_t buildRequest(std::initializer_list<std::string_view> pieces);
