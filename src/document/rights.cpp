#include "document/rights.h"

#include <cctype>
#include <cstdio>
#include <cstring>

namespace {

// No right name is longer than 13 characters, so a longer name can never match.
constexpr std::size_t kLongestRightName = 13;

const Right *rightNamed(const char *name, std::size_t length) {
  for (const Right &right : kRights)
    if (std::strlen(right.name) == length && std::memcmp(right.name, name, length) == 0)
      return &right;
  return nullptr;
}

const Right *rightForUpperLetter(char letter) {
  for (const Right &right : kRights)
    if (right.element != nullptr &&
        std::toupper(static_cast<unsigned char>(right.letter)) == letter)
      return &right;
  return nullptr;
}

}  // namespace

int rightsToLetters(const char *elements, char *letters, std::size_t lettersSize) {
  if (elements == nullptr || letters == nullptr || lettersSize == 0) return 0;
  std::size_t count = 0;
  std::size_t i = 0;
  while (elements[i] != '\0') {
    if (elements[i] != '<') {
      ++i;
      continue;
    }
    // The name runs from after '<' to the next '/', whatever lies between.
    const std::size_t nameStart = i + 1;
    std::size_t slash = nameStart;
    while (elements[slash] != '\0' && elements[slash] != '/')
      ++slash;
    if (elements[slash] == '\0') break;
    const std::size_t nameLength = slash - nameStart;
    if (nameLength <= kLongestRightName) {
      const Right *right = rightNamed(elements + nameStart, nameLength);
      if (right != nullptr && count + 1 < lettersSize) letters[count++] = right->letter;
    }
    // Resume two characters after the '/': the '>' is skipped unseen.
    if (elements[slash + 1] == '\0') break;
    i = slash + 2;
  }
  letters[count] = '\0';
  return static_cast<int>(count);
}

const char *rightLetterToElement(char letter) {
  const char upper = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
  const Right *right = rightForUpperLetter(upper);
  if (right == nullptr) {
    std::fprintf(stderr, "Invalid access right : %c\n", upper);
    return nullptr;
  }
  return right->element;
}

void convertRxlRights(const char *text, int length, char *letters, char *elements) {
  letters[0] = '\0';
  elements[0] = '\0';
  if (length < 1) return;
  std::size_t letterCount = 0;
  std::size_t elementsLength = 0;
  for (int i = 0; i < length; ++i) {
    const char c = text[i];
    const Right *right =
        std::isupper(static_cast<unsigned char>(c)) ? rightForUpperLetter(c) : nullptr;
    if (right == nullptr) {
      std::fprintf(stderr, "Ignoring \"%c\" during rights conversion\n", c);
      continue;
    }
    if (letterCount < kRxlLettersSize - 1) letters[letterCount++] = right->letter;
    const std::size_t elementLength = std::strlen(right->element);
    if (elementsLength + elementLength < kRxlElementsSize) {
      std::memcpy(elements + elementsLength, right->element, elementLength);
      elementsLength += elementLength;
    }
  }
  letters[letterCount] = '\0';
  elements[elementsLength] = '\0';
}
