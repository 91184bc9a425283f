// The window-copying reference tag reader that the tests and benchmarks compare the reader with.
#include "tag_reader_oracle.h"

#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "document/records.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"

namespace oracle {
namespace {

constexpr int kWindow = static_cast<int>(kInputWindowSize);
char buffer[kWindow + 1];
int count = 0;
int position = 0;
bool inCdata = false;
bool pendingEmptyEnd = false;
int emptyEndPosition = 0;

// One read() of 8192 - count bytes at count; 1 at the end of input, 0, or -errno.
int refill() {
  const ssize_t got = read(inputFd, buffer + count, kWindow - count);
  if (got < 0) {
    const int error = errno;
    std::fprintf(stderr, "Error %m reading the input file.\n");
    return -error;
  }
  if (got == 0 && count == 0) return 1;
  count += static_cast<int>(got);
  return 0;
}

void shift() {
  char scratch[kWindow];
  std::memset(scratch, 0, sizeof scratch);
  std::strcpy(scratch, buffer + position);
  std::memset(buffer, 0, sizeof buffer);
  std::strcpy(buffer, scratch);
  count -= position;
  position = 0;
}

bool at(int index, const char *text) {
  const int length = static_cast<int>(std::strlen(text));
  return index + length <= count && std::strncmp(buffer + index, text, length) == 0;
}

void appendName(char *name, int &length, char c) {
  if (length < static_cast<int>(kTagNameSize) - 1) name[length++] = c;
}

int readTagUntraced(char *name, unsigned long *isEndTag) {
  if (pendingEmptyEnd) {
    int length = 0;
    for (int i = position; i < emptyEndPosition; ++i)
      appendName(name, length, buffer[i]);
    name[length] = '\0';
    position = emptyEndPosition + 2 < count ? emptyEndPosition + 2 : count;
    pendingEmptyEnd = false;
    *isEndTag = 1;
    return 0;
  }
  for (;;) {
    const int filled = refill();
    if (filled < 0) return -filled;
    if (filled > 0) {
      name[0] = '\0';
      return kEndOfInput;
    }
    bool again = false;
    while (!again) {
      if (position > 0 && buffer[position] == '<') {
        shift();
        again = true;
      } else if (position == count) {
        shift();
        return 0;
      } else if (inCdata) {
        if (at(position, "]]>")) {
          inCdata = false;
          position += 3;
        } else {
          ++position;
        }
      } else if (at(position, "<![CDATA[")) {
        inCdata = true;
        ++position;
      } else {
        *isEndTag = 0;
        if (buffer[position] != '<') {
          ++position;
          continue;
        }
        ++position;
        if (position < count && buffer[position] == '/') {
          *isEndTag = 1;
          ++position;
        }
        const int nameStart = position;
        int length = 0;
        bool blankSeen = false;
        while (position < count && buffer[position] != '>' && buffer[position] != '/') {
          if (std::isspace(static_cast<unsigned char>(buffer[position]))) {
            blankSeen = true;
            if (at(position + 1, "type=\"adID\"")) {
              for (int i = 0; i < 12; ++i)
                appendName(name, length, buffer[position + i]);
              position += 12;
              continue;
            }
          } else if (!blankSeen) {
            appendName(name, length, buffer[position]);
          }
          ++position;
        }
        name[length] = '\0';
        if (position == count) return 0;
        if (buffer[position] == '>') {
          ++position;
          return 0;
        }
        pendingEmptyEnd = true;
        emptyEndPosition = position;
        position = nameStart;
        return 0;
      }
    }
  }
}

}  // namespace

int readTag(char *name, unsigned long *isEndTag, const char *label) {
  const int result = readTagUntraced(name, isEndTag);
  if (debug) std::printf("**%s** ccode=%d  endtag=%lu  tag=%s\n", label, result, *isEndTag, name);
  return result;
}

int readContents(char *text, std::size_t textSize, bool *tooLong) {
  if (tooLong != nullptr) *tooLong = false;
  std::size_t n = 0;
  const auto append = [&](char c) {
    if (n < textSize - 1)
      text[n++] = c;
    else if (tooLong != nullptr)
      *tooLong = true;
  };
  if (pendingEmptyEnd) {
    text[0] = '\0';
    return 0;
  }
  for (;;) {
    const int filled = refill();
    if (filled < 0) {
      text[n] = '\0';
      return -filled;
    }
    if (filled > 0) {
      text[0] = '\0';
      return kEndOfInput;
    }
    for (;;) {
      if (position > 0 && buffer[position] == '<') {
        shift();
        break;
      }
      if (position == count) {
        shift();
        text[n] = '\0';
        return 0;
      }
      if (inCdata) {
        if (at(position, "]]>")) {
          inCdata = false;
          position += 1;
          text[n] = '\0';
          return 0;
        }
        append(buffer[position++]);
      } else if (buffer[position] != '<') {
        append(buffer[position++]);
      } else if (at(position, "<![CDATA[")) {
        inCdata = true;
        position += 9;
      } else {
        text[n] = '\0';
        return 0;
      }
    }
  }
}

int goPastEndTag(const char *name) {
  char tag[kTagNameSize] = "";
  unsigned long isEndTag = 0;
  for (;;) {
    if (readTag(tag, &isEndTag, "goPastEndTag") != 0) {
      std::fprintf(stderr, "Unable to find end tag: %s\n", name);
      return -1;
    }
    if (isEndTag != 0 && std::strcmp(tag, name) == 0) return 0;
  }
}

void getRights(char *out, const char *endName, std::size_t outSize, bool *tooLong) {
  if (tooLong != nullptr) *tooLong = false;
  out[0] = '\0';
  char tag[kTagNameSize] = "";
  unsigned long isEndTag = 0;
  while (readTag(tag, &isEndTag, "getRights") == 0) {
    if (isEndTag == 0) {
      if (std::strlen(out) + std::strlen(tag) + 3 < outSize) {
        std::strcat(out, "<");
        std::strcat(out, tag);
        std::strcat(out, "/>");
      } else if (tooLong != nullptr) {
        *tooLong = true;
      }
    } else if (std::strcmp(tag, endName) == 0) {
      break;
    }
  }
}

void resetTagReader() {
  std::memset(buffer, 0, sizeof buffer);
  count = position = 0;
  inCdata = false;
  pendingEmptyEnd = false;
  emptyEndPosition = 0;
}

}  // namespace oracle
