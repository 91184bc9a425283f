#include "model/entry.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>

#include "document/rights.h"
#include "model/key_hash.h"

namespace {

constexpr std::size_t kRightCount = sizeof kRights / sizeof kRights[0];

}  // namespace

Section sectionOf(EntryKind kind) {
  switch (kind) {
  case EntryKind::trustee:
  case EntryKind::filter: return Section::trustees;
  case EntryKind::userQuota: return Section::userQuotas;
  case EntryKind::dirQuota: break;
  }
  return Section::dirQuotas;
}

std::string_view kindName(EntryKind kind) {
  switch (kind) {
  case EntryKind::trustee: return "trustee";
  case EntryKind::filter: return "inherited rights filter";
  case EntryKind::userQuota: return "user quota";
  case EntryKind::dirQuota: break;
  }
  return "directory quota";
}

std::string_view kindKey(EntryKind kind) {
  switch (kind) {
  case EntryKind::trustee: return "trustee";
  case EntryKind::filter: return "filter";
  case EntryKind::userQuota: return "userQuota";
  case EntryKind::dirQuota: break;
  }
  return "dirQuota";
}

std::string_view sectionElement(Section section) {
  switch (section) {
  case Section::trustees: return "trusteeInfo";
  case Section::userQuotas: return "userInfo";
  case Section::dirQuotas: break;
  }
  return "dirInfo";
}

RightsSet rightBit(std::string_view name) {
  for (std::size_t at = 0; at < kRightCount; ++at)
    if (name == kRights[at].name) return static_cast<RightsSet>(1u << at);
  return 0;
}

std::string rightsLetters(RightsSet rights) {
  std::string letters;
  appendRightsLetters(rights, letters);
  return letters;
}

void appendRightsLetters(RightsSet rights, std::string &out) {
  for (std::size_t at = 0; at < kRightCount; ++at)
    if (rights & (1u << at)) out += kRights[at].letter;
}

std::string rightsValue(RightsSet rights) {
  std::string letters = rightsLetters(rights);
  for (char &letter : letters)
    letter = static_cast<char>(std::toupper(letter));
  return letters;
}

std::string rightsElements(RightsSet rights) {
  std::string elements;
  writtenElements(RightsList(rights), elements);
  return elements;
}

RightsList &RightsList::add(RightsSet rights) {
  for (std::size_t at = 0; at < kRightCount; ++at) {
    const auto bit = static_cast<RightsSet>(1u << at);
    if ((rights & bit) == 0) continue;
    // Still the table's order, each once, while every right comes after those already named.
    if (written_.empty() && set_ < bit) {
      set_ |= bit;
      continue;
    }
    if (written_.empty())
      for (std::size_t before = 0; before < kRightCount; ++before)
        if ((set_ & (1u << before)) != 0) written_ += static_cast<char>(before);
    if (written_.size() < kWrittenLimit) written_ += static_cast<char>(at);
    set_ |= bit;
  }
  return *this;
}

void RightsList::setWritten(RightsSet set, std::string_view written) {
  set_ = set;
  written_.clear();
  for (const char index : written.substr(0, kWrittenLimit))
    if (static_cast<unsigned char>(index) < kRightCount) written_ += index;
}

namespace {

// "<read/>" ... "<secure/>", each with its length.
struct ElementText {
  char text[24];
  std::size_t length;
};
constexpr auto kElementTexts = [] {
  std::array<ElementText, kRightCount> texts{};
  for (std::size_t at = 0; at < kRightCount; ++at) {
    std::size_t length = 0;
    texts[at].text[length++] = '<';
    for (const char *c = kRights[at].name; *c != '\0'; ++c)
      texts[at].text[length++] = *c;
    texts[at].text[length++] = '/';
    texts[at].text[length++] = '>';
    texts[at].length = length;
  }
  return texts;
}();

}  // namespace

void writtenElements(const RightsList &rights, std::string &out) {
  out.clear();
  const auto put = [&out](std::size_t at) {
    out.append(kElementTexts[at].text, kElementTexts[at].length);
  };
  if (!rights.written().empty()) {
    for (const char index : rights.written())
      put(static_cast<unsigned char>(index));
    return;
  }
  for (std::size_t at = 0; at < kRightCount; ++at)
    if ((rights.set() & (1u << at)) != 0) put(at);
}

std::string comparablePath(const Entry &entry) {
  std::string path = entry.path;
  if (entry.kind == EntryKind::dirQuota)
    for (char &c : path)
      if (c == '\\') c = '/';
  return path;
}

UserKey userKey(EntryKind kind, bool ad, std::string_view name, std::string_view id) {
  if (kind != EntryKind::trustee && kind != EntryKind::userQuota) return {};
  // An AD user is its SID; an AD user quota without one is known by its name alone.
  const bool bySid = ad && !id.empty();
  return {bySid ? 'D' : ad ? 'N' : 'A', bySid ? id : name};
}

void entryKey(const Entry &entry, std::string &key) {
  key.clear();
  key += static_cast<char>('0' + static_cast<int>(entry.kind));
  if (entry.kind != EntryKind::userQuota) {
    // Appended in place: a path is not copied to be added.
    if (entry.kind == EntryKind::dirQuota)
      key += comparablePath(entry);
    else
      key += entry.path;
    key += '\0';
  }
  const UserKey user = userKey(entry.kind, entry.ad, entry.name, entry.id);
  if (user.form != 0) key.append(1, user.form).append(user.user);
}

std::uint64_t entryKeyHash(const Entry &entry) {
  const bool hasPath = entry.kind != EntryKind::userQuota;
  const UserKey user = userKey(entry.kind, entry.ad, entry.name, entry.id);
  // The key as entryKey() writes it, into a buffer of the stack when it fits.
  char buffer[512];
  const std::size_t size =
      1 + (hasPath ? entry.path.size() + 1 : 0) + (user.form != 0 ? 1 + user.user.size() : 0);
  if (size > sizeof buffer) {
    std::string key;
    entryKey(entry, key);
    return bytesHash(key.data(), key.size());
  }
  char *end = buffer;
  *end++ = static_cast<char>('0' + static_cast<int>(entry.kind));
  if (hasPath) {
    std::memcpy(end, entry.path.data(), entry.path.size());
    if (entry.kind == EntryKind::dirQuota) std::replace(end, end + entry.path.size(), '\\', '/');
    end += entry.path.size();
    *end++ = '\0';
  }
  if (user.form != 0) {
    *end++ = user.form;
    std::memcpy(end, user.user.data(), user.user.size());
  }
  return bytesHash(buffer, size);
}

std::string userLabel(const Entry &entry) {
  if (!entry.ad) return entry.name;
  if (entry.name.empty()) return entry.id;
  return entry.id + " (" + entry.name + ")";
}
