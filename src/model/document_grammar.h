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

// Whether `child` may stand inside `parent`.
bool allowedIn(Element child, Element parent);

// Elements whose text is their value (they hold no elements).
inline bool holdsText(Element element) {
  switch (element) {
  case Element::name:
  case Element::id:
  case Element::zid:
  case Element::path:
  case Element::spaceUsed:
  case Element::quotaAmount:
  case Element::utc:
  case Element::string:
  case Element::numberOfTimes: return true;
  default: return false;
  }
}

// The attributes an element may carry: "type" (only "adID") on trustee and user, "value" on
// rights and inheritedRightsFilter.
bool allowsAttribute(Element element, std::string_view attribute);

// The name of a known element ("" for the document, "right" for any right).
std::string_view elementName(Element element);
