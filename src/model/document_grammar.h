// Which elements a Metadata document holds and where: the strict form that trovan save writes
// and trovan restore reads correctly.
#pragma once
#include <cstdint>
#include <string_view>

enum class Element : std::uint8_t {
  document,  // the parent of the root element
  metadata,
  trusteeInfo,
  userInfo,
  dirInfo,
  file,
  trustee,
  inheritedRightsFilter,
  rights,
  right,  // one of the rights table's empty elements
  name,
  id,
  zid,
  path,
  user,
  spaceUsed,
  quotaAmount,
  idNotFound,
  time,
  utc,
  string,
  numberOfTimes,
  directory,
  unknown,
};

// What an element's name stands for: the element, and for a right its bit.
struct ElementMatch {
  Element element = Element::unknown;
  std::uint16_t right = 0;  // a RightsSet bit when element is Element::right
};

// The element of a name, by a switch on its length and first letter (one comparison of the
// whole name at most): it runs for every element of every document.
ElementMatch matchElement(std::string_view name);

// The element of a name (a right's name gives Element::right).
Element elementOf(std::string_view name);

// The tables behind allowedIn() and elementName(), asked for every element of every document.
namespace grammar {

struct Named {
  std::string_view name;
  Element element;
};

inline constexpr Named kElements[] = {
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

inline constexpr Placement kPlacements[] = {
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

inline constexpr AllowedChildren kAllowed;

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

inline constexpr ElementNames kNames;

}  // namespace grammar

// Whether `child` may stand inside `parent`.
inline bool allowedIn(Element child, Element parent) {
  return (grammar::kAllowed.of[static_cast<unsigned>(parent)] >> static_cast<unsigned>(child)) & 1u;
}

namespace grammar {

// One bit per Element value whose text is its value.
inline constexpr std::uint32_t kTextHolders = [] {
  std::uint32_t bits = 0;
  for (Element element :
       {Element::name, Element::id, Element::zid, Element::path, Element::spaceUsed,
        Element::quotaAmount, Element::utc, Element::string, Element::numberOfTimes})
    bits |= 1u << static_cast<unsigned>(element);
  return bits;
}();

}  // namespace grammar

// Elements whose text is their value (they hold no elements): a bit test, asked for every
// element and text of every document.
inline bool holdsText(Element element) {
  return (grammar::kTextHolders >> static_cast<unsigned>(element)) & 1u;
}

// The attributes an element may carry: "type" (only "adID") on trustee and user, "value" on
// rights and inheritedRightsFilter.
inline bool allowsAttribute(Element element, std::string_view attribute) {
  if (element == Element::trustee || element == Element::user) return attribute == "type";
  if (element == Element::rights || element == Element::inheritedRightsFilter)
    return attribute == "value";
  return false;
}

// The name of a known element ("" for the document, "right" for any right).
inline std::string_view elementName(Element element) {
  return grammar::kNames.of[static_cast<unsigned>(element)];
}
