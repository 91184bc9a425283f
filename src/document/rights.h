// The ten rights and the converters between their three written forms: a run of empty elements
// ("<read/><write/>"), lower-case letters ("rw"), and upper-case report letters ("RW").
#pragma once
#include <cstddef>

struct Right {
  const char *name;     // element name, e.g. "fileScan"
  const char *element;  // empty-element text, e.g. "<fileScan/>"; null for salvage and secure
  char letter;          // lower-case letter, e.g. 'f'
};

inline constexpr Right kRights[] = {
    {"read", "<read/>", 'r'},
    {"write", "<write/>", 'w'},
    {"create", "<create/>", 'c'},
    {"erase", "<erase/>", 'e'},
    {"accessControl", "<accessControl/>", 'a'},
    {"fileScan", "<fileScan/>", 'f'},
    {"modify", "<modify/>", 'm'},
    {"supervisor", "<supervisor/>", 's'},
    {"salvage", nullptr, 'v'},
    {"secure", nullptr, 'x'},
};

inline constexpr std::size_t kRightsLettersSize = 64;  // callers' letter buffers
inline constexpr std::size_t kRxlLettersSize = 33;
inline constexpr std::size_t kRxlElementsSize = 256;

// Letters of the right elements in `elements`, in input order, into `letters` (at most
// lettersSize - 1 letters, NUL-terminated). Returns the count written.
int rightsToLetters(const char *elements, char *letters,
                    std::size_t lettersSize = kRightsLettersSize);

// The element text for a report letter (either case), or null after "Invalid access right : %c".
const char *rightLetterToElement(char letter);

// RXL trustee file rights ("RWF") to letters ("rwf", at most 32) and elements (below 256 bytes).
void convertRxlRights(const char *text, int length, char *letters, char *elements);
