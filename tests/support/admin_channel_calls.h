// Shorter forms of the admin channel's calls for the tests: the request's length is taken from
// requestBuffer, and the <gemelPath/> element is read as a string.
#pragma once
#include <cstring>
#include <string_view>

#include "channel/admin_channel.h"

inline const char *gemelElement() { return gemelPiece().data(); }

inline int sendRequest() { return sendRequest(std::strlen(requestBuffer)); }

inline int exchangeRequest(std::string_view replyElement, Reply &reply) {
  return exchangeRequest(replyElement, reply, std::strlen(requestBuffer));
}
