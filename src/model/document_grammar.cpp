#include "model/document_grammar.h"

#include "document/rights.h"
#include "model/entry.h"

namespace {

struct Named {
  std::string_view name;
  Element element;
};

constexpr Named kElements[] = {
    {"metadata", Element::metadata},
    {"trusteeInfo", Element::trusteeInfo},
    {"userInfo", Element::userInfo},
    {"dirInfo", Element::dirInfo},
    {"file", Element::file},
    {"trustee", Element::trustee},
    {"inheritedRightsFilter", Element::inheritedRightsFilter},
    {"rights", Element::rights},
    {"name", Element::name},
    {"id", Element::id},
    {"zid", Element::zid},
    {"path", Element::path},
    {"user", Element::user},
    {"spaceUsed", Element::spaceUsed},
    {"quotaAmount", Element::quotaAmount},
    {"idNotFound", Element::idNotFound},
    {"time", Element::time},
    {"utc", Element::utc},
    {"string", Element::string},
    {"numberOfTimes", Element::numberOfTimes},
    {"directory", Element::directory},
};

struct Placement {
  Element child;
  Element parent;
};

constexpr Placement kPlacements[] = {
    {Element::metadata, Element::document},
    {Element::trusteeInfo, Element::metadata},
    {Element::userInfo, Element::metadata},
    {Element::dirInfo, Element::metadata},
    {Element::file, Element::trusteeInfo},
    {Element::zid, Element::file},
    {Element::path, Element::file},
    {Element::trustee, Element::file},
    {Element::inheritedRightsFilter, Element::file},
    {Element::name, Element::trustee},
    {Element::id, Element::trustee},
    {Element::zid, Element::trustee},
    {Element::rights, Element::trustee},
    {Element::right, Element::rights},
    {Element::right, Element::inheritedRightsFilter},
    {Element::user, Element::userInfo},
    {Element::id, Element::user},
    {Element::spaceUsed, Element::user},
    {Element::quotaAmount, Element::user},
    {Element::name, Element::user},
    {Element::idNotFound, Element::user},
    {Element::time, Element::idNotFound},
    {Element::numberOfTimes, Element::idNotFound},
    {Element::utc, Element::time},
    {Element::string, Element::time},
    {Element::directory, Element::dirInfo},
    {Element::zid, Element::directory},
    {Element::path, Element::directory},
    {Element::spaceUsed, Element::directory},
    {Element::quotaAmount, Element::directory},
};

// The children each element may hold, one bit per Element value.
struct AllowedChildren {
  std::uint32_t of[static_cast<unsigned>(Element::unknown) + 1] = {};
  constexpr AllowedChildren() {
    for (const Placement &placement : kPlacements)
      of[static_cast<unsigned>(placement.parent)] |= 1u << static_cast<unsigned>(placement.child);
  }
};

constexpr AllowedChildren kAllowed;

// The name of each known element, by Element value.
struct ElementNames {
  std::string_view of[static_cast<unsigned>(Element::unknown) + 1] = {};
  constexpr ElementNames() {
    for (const Named &named : kElements)
      of[static_cast<unsigned>(named.element)] = named.name;
    of[static_cast<unsigned>(Element::right)] = "right";
    of[static_cast<unsigned>(Element::unknown)] = "?";
  }
};

constexpr ElementNames kNames;

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

bool allowedIn(Element child, Element parent) {
  return (kAllowed.of[static_cast<unsigned>(parent)] >> static_cast<unsigned>(child)) & 1u;
}

bool allowsAttribute(Element element, std::string_view attribute) {
  if (element == Element::trustee || element == Element::user) return attribute == "type";
  if (element == Element::rights || element == Element::inheritedRightsFilter)
    return attribute == "value";
  return false;
}

std::string_view elementName(Element element) { return kNames.of[static_cast<unsigned>(element)]; }
