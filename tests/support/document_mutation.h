// Random damage to a test document, for the differential tests: a few byte changes and
// insertions (of the given special bytes), deletions, and a cut at the end.
#pragma once
#include <cstddef>
#include <random>
#include <string>
#include <string_view>

namespace testing_support {

inline std::string mutateDocument(std::mt19937 &random, std::string doc, std::string_view special) {
  for (unsigned n = 1 + random() % 8; n > 0 && !doc.empty(); --n) {
    const std::size_t at = random() % doc.size();
    switch (random() % 4) {
    case 0: doc[at] = special[random() % special.size()]; break;
    case 1: doc.insert(at, 1, special[random() % special.size()]); break;
    case 2: doc.erase(at, 1 + random() % 16); break;
    default: doc.resize(at); break;
    }
  }
  return doc;
}

}  // namespace testing_support
