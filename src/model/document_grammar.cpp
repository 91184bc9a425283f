#include "model/document_grammar.h"

#include "document/rights.h"
#include "model/entry.h"

namespace {

constexpr ElementMatch element(Element element) { return {element, 0}; }
constexpr ElementMatch right(unsigned bit) {
  return {Element::right, static_cast<std::uint16_t>(1u << bit)};
}

// The candidate for a name of one length by its first letters (right bits in table order).
ElementMatch candidate(std::size_t length, char first, char second) {
  switch (length) {
  case 2: return element(Element::id);
  case 3: return first == 'z' ? element(Element::zid) : element(Element::utc);
  case 4:
    switch (first) {
    case 'f': return element(Element::file);
    case 'n': return element(Element::name);
    case 'p': return element(Element::path);
    case 'u': return element(Element::user);
    case 't': return element(Element::time);
    default: return right(0);  // read
    }
  case 5: return first == 'w' ? right(1) : right(3);  // write, erase
  case 6:
    switch (first) {
    case 'r': return element(Element::rights);
    case 's': return second == 't' ? element(Element::string) : right(9);  // secure
    case 'c': return right(2);                                             // create
    case 'm': return right(6);                                             // modify
    default: return {};
    }
  case 7:
    switch (first) {
    case 't': return element(Element::trustee);
    case 'd': return element(Element::dirInfo);
    default: return right(8);  // salvage
    }
  case 8:
    switch (first) {
    case 'm': return element(Element::metadata);
    case 'u': return element(Element::userInfo);
    default: return right(5);  // fileScan
    }
  case 9: return first == 's' ? element(Element::spaceUsed) : element(Element::directory);
  case 10: return first == 'i' ? element(Element::idNotFound) : right(7);  // supervisor
  case 11: return first == 't' ? element(Element::trusteeInfo) : element(Element::quotaAmount);
  case 13: return first == 'n' ? element(Element::numberOfTimes) : right(4);  // accessControl
  case 21: return element(Element::inheritedRightsFilter);
  default: return {};
  }
}

// The name a candidate stands for.
std::string_view candidateName(ElementMatch match) {
  if (match.element != Element::right) return elementName(match.element);
  unsigned bit = 0;
  while ((match.right >> bit) != 1)
    ++bit;
  return kRights[bit].name;
}

}  // namespace

ElementMatch matchElement(std::string_view name) {
  if (name.empty()) return {};
  const ElementMatch match = candidate(name.size(), name[0], name.size() > 1 ? name[1] : 0);
  if (match.element == Element::unknown || candidateName(match) != name) return {};
  return match;
}

Element elementOf(std::string_view name) { return matchElement(name).element; }
