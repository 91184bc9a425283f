#include "document/messages.h"

#include <cerrno>
#include <cstdarg>
#include <cstdlib>

namespace {

thread_local MessageQueue *threadQueue = nullptr;

}  // namespace

void queueMessagesOfThisThread(MessageQueue *queue) { threadQueue = queue; }

void handOverQueuedMessages() {
  if (threadQueue != nullptr) threadQueue->handOver();
}

void printMessage(std::FILE *stream, const char *format, ...) {
  const int error = errno;  // for %m
  va_list arguments;
  va_start(arguments, format);
  if (threadQueue == nullptr) {
    std::vfprintf(stream, format, arguments);
    va_end(arguments);
    return;
  }
  // The messages are short (a tag name at most); a longer one is formatted in memory of its size.
  char shortText[512];
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(shortText, sizeof shortText, format, arguments);
  va_end(arguments);
  if (length < 0) {
    va_end(again);
    return;
  }
  if (static_cast<std::size_t>(length) < sizeof shortText) {
    threadQueue->addMessage(stream, shortText, static_cast<std::size_t>(length));
  } else if (char *text = static_cast<char *>(std::malloc(static_cast<std::size_t>(length) + 1))) {
    errno = error;
    std::vsnprintf(text, static_cast<std::size_t>(length) + 1, format, again);
    threadQueue->addMessage(stream, text, static_cast<std::size_t>(length));
    std::free(text);
  }
  va_end(again);
}
