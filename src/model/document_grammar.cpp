#include "model/document_grammar.h"

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

}  // namespace

Element elementOf(std::string_view name) {
  for (const Named &named : kElements)
    if (named.name == name) return named.element;
  return rightBit(name) != 0 ? Element::right : Element::unknown;
}

bool allowedIn(Element child, Element parent) {
  for (const Placement &placement : kPlacements)
    if (placement.child == child && placement.parent == parent) return true;
  return false;
}

bool holdsText(Element element) {
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

bool allowsAttribute(Element element, std::string_view attribute) {
  if (element == Element::trustee || element == Element::user) return attribute == "type";
  if (element == Element::rights || element == Element::inheritedRightsFilter)
    return attribute == "value";
  return false;
}

std::string_view elementName(Element element) {
  if (element == Element::document) return "";
  for (const Named &named : kElements)
    if (named.element == element) return named.name;
  return element == Element::right ? "right" : "?";
}
