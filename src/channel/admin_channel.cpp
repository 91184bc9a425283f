#include "channel/admin_channel.h"

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "document/completion_codes.h"
#include "document/tag_search.h"

int reflectOnGemel = 1;
int adminFd = 0;
char requestBuffer[kRequestBufferSize];
char *replyBuffer = nullptr;
int replyBufferSize = 0;

namespace {

RequestStandIn requestStandIn = nullptr;
void *requestStandInContext = nullptr;

int rewindAdminFile() {
  if (lseek(adminFd, 0, SEEK_SET) < 0) {
    const int error = errno;
    std::fprintf(stderr, "Error setting file position for admin file system operation.  err=%m\n");
    return error;
  }
  return 0;
}

// Copies reply[from, end) (to the text's end when end is npos) into out, cut to size - 1.
void copyUpTo(std::string_view reply, std::size_t from, std::size_t end, std::size_t size,
              char *out) {
  std::size_t length = (end != std::string_view::npos ? end : reply.size()) - from;
  if (length > size - 1) length = size - 1;
  std::memcpy(out, reply.data() + from, length);
  out[length] = '\0';
}

// The decimal number at `text`: an optional sign, then digits up to the first non-digit.
int parseResultValue(const char *text) {
  const bool negative = *text == '-';
  if (*text == '-' || *text == '+') ++text;
  long long value = 0;
  for (; *text >= '0' && *text <= '9'; ++text)
    if (value <= INT_MAX) value = value * 10 + (*text - '0');
  if (negative) value = -value;
  if (value > INT_MAX) value = INT_MAX;
  if (value < INT_MIN) value = INT_MIN;
  return static_cast<int>(value);
}

// Removes `count` characters at `at` from a NUL-terminated text of `*length` characters.
void cutOut(char *text, int *length, char *at, int count) {
  const int available = static_cast<int>(text + *length - at);
  if (count > available) count = available;
  std::memmove(at, at + count, static_cast<std::size_t>(available - count) + 1);
  *length -= count;
}

// Reads the whole reply from offset 0 of adminFd into replyBuffer, NUL-terminated. Returns 0, -1
// for a buffer failure, or an errno value, after its message.
int readReplyText() {
  if (requestStandIn != nullptr)
    return replyBuffer != nullptr ? kSuccess : kOwnFailure;  // the reply is there
  int used = 0;
  int room = replyBufferSize - 1;
  for (;;) {
    const ssize_t count = read(adminFd, replyBuffer + used, room);
    if (count == 0) break;
    if (count < 0) {
      const int error = errno;
      std::fprintf(stderr, "Error reading the reply from the admin file system.  err=%m\n");
      return error;
    }
    used += static_cast<int>(count);
    room -= static_cast<int>(count);
    if (room == 0) {
      if (!growReplyBuffer()) return kOwnFailure;
      room = kReplyBufferStep;
    }
  }
  replyBuffer[used] = '\0';
  return 0;
}

// receiveReply; with `detailsWhenRefusedOnly`, the description and the name are looked for only
// when the result is not 0 (they are left empty otherwise).
int receiveReplyParts(std::string_view replyElement, int *result, std::size_t descriptionSize,
                      char *description, std::size_t nameSize, char *name,
                      bool detailsWhenRefusedOnly) {
  if (requestStandIn == nullptr) {
    if (int error = rewindAdminFile(); error != 0) return error;
  }
  if (replyBuffer == nullptr) {
    std::fprintf(stderr, "Error getting big enough buffer for trustees\n");
    return kOwnFailure;
  }
  if (const int error = readReplyText(); error != 0) return error;

  // The reply as a string: up to its first NUL byte. Every search below looks forward in it
  // from where the previous one stopped, as searches of the string would.
  const std::string_view reply(replyBuffer, std::strlen(replyBuffer));
  const auto find = [&](std::string_view tag, std::size_t from) {
    return findTag(reply, tag, from);
  };
  const std::size_t element = find(replyElement, 0);
  if (element == std::string_view::npos) {
    std::fprintf(stderr, "Unrecognized response to request.  response=%s\n", replyBuffer);
    return kOwnFailure;
  }
  static constexpr std::string_view kResultTag = "<result value=\"";
  const std::size_t resultTag = find(kResultTag, element);
  if (resultTag == std::string_view::npos) {
    std::fprintf(stderr, "Unable to find return value for the request.  response=%s\n",
                 replyBuffer);
    return kOwnFailure;
  }
  const std::size_t digits = resultTag + kResultTag.size();
  *result = parseResultValue(replyBuffer + digits);

  std::size_t nameSearchFrom = digits;
  description[0] = '\0';
  if (detailsWhenRefusedOnly && *result == 0) {
    if (name != nullptr) name[0] = '\0';
    return 0;
  }
  static constexpr std::string_view kDescription = "<description>";
  if (const std::size_t start = find(kDescription, digits); start != std::string_view::npos) {
    const std::size_t text = start + kDescription.size();
    copyUpTo(reply, text, find("</description>", text), descriptionSize, description);
    nameSearchFrom = start;
  }
  if (name != nullptr) {
    name[0] = '\0';
    static constexpr std::string_view kName = "<name>";
    if (const std::size_t start = find(kName, nameSearchFrom); start != std::string_view::npos) {
      const std::size_t text = start + kName.size();
      copyUpTo(reply, text, find("</name>", text), nameSize, name);
    }
  }
  return 0;
}

}  // namespace

void setRequestStandIn(RequestStandIn standIn, void *context) {
  requestStandIn = standIn;
  requestStandInContext = standIn != nullptr ? context : nullptr;
}

bool requestStandInSet() { return requestStandIn != nullptr; }

bool allocateReplyBuffer() {
  replyBuffer = static_cast<char *>(std::malloc(kReplyBufferStep));
  if (replyBuffer == nullptr) return false;
  replyBufferSize = kReplyBufferStep;
  return true;
}

void freeReplyBuffer() {
  std::free(replyBuffer);
  replyBuffer = nullptr;
  replyBufferSize = 0;
}

void resetAdminChannel() {
  reflectOnGemel = 1;
  adminFd = 0;
  requestBuffer[0] = '\0';
  freeReplyBuffer();
  setRequestStandIn(nullptr, nullptr);
}

bool growReplyBuffer() {
  // The size is a signed 32-bit count: past its range the buffer cannot grow, as if memory had
  // run out.
  const bool fits = replyBufferSize <= INT_MAX - kReplyBufferStep;
  char *grown = nullptr;
  if (fits) {
    replyBufferSize += kReplyBufferStep;
    grown = static_cast<char *>(std::realloc(replyBuffer, replyBufferSize));
  }
  if (grown == nullptr) {
    std::free(replyBuffer);
    replyBuffer = nullptr;
    std::fprintf(stderr, "Error getting big enough buffer for trustees\n");
    return false;
  }
  replyBuffer = grown;
  return true;
}

int sendRequest(std::size_t length) {
  if (requestStandIn != nullptr) {
    if (replyBuffer != nullptr) replyBuffer[0] = '\0';
    const int error = requestStandIn(requestBuffer, length, requestStandInContext);
    if (replyBuffer != nullptr) replyBuffer[replyBufferSize - 1] = '\0';
    if (error == 0) return 0;
    errno = error;
    std::fprintf(stderr, "Error sending the request to the admin file system.  err=%m\n");
    return error;
  }
  if (int error = rewindAdminFile(); error != 0) return error;
  if (write(adminFd, requestBuffer, length) < 0) {
    const int error = errno;
    std::fprintf(stderr, "Error sending the request to the admin file system.  err=%m\n");
    return error;
  }
  return 0;
}

int receiveReply(const char *replyElement, int *result, std::size_t descriptionSize,
                 char *description, std::size_t nameSize, char *name) {
  return receiveReplyParts(replyElement, result, descriptionSize, description, nameSize, name,
                           false);
}

int exchangeRequest(std::string_view replyElement, Reply &reply, std::size_t length) {
  if (const int error = sendRequest(length); error != 0) return error;
  return receiveReplyParts(replyElement, &reply.result, sizeof reply.description, reply.description,
                           sizeof reply.name, reply.name, true);
}

void stripReplyWrapper(char *text, int *length) {
  text[*length] = '\0';
  static constexpr char kOpen[] = "<quillReply>";
  static constexpr char kClose[] = "</quillReply>";
  if (char *open = std::strstr(text, kOpen); open != nullptr)
    cutOut(text, length, open, sizeof kOpen - 1 + 1);
  if (char *close = std::strstr(text, kClose); close != nullptr)
    cutOut(text, length, close, sizeof kClose - 1 + 1);
  if (char *result = std::strstr(text, "<result value="); result != nullptr) {
    static constexpr char kResultEnd[] = "</result>";
    if (char *end = std::strstr(result, kResultEnd); end != nullptr)
      cutOut(text, length, result, static_cast<int>(end + sizeof kResultEnd - 1 - result) + 1);
  }
}
