// The entries of a Metadata document as trovanctl sees them: one trustee, inherited rights
// filter, user quota or directory quota each, with the place in the document where it stands.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

// A place in a document: line and column, both from 1.
struct Position {
  unsigned long line = 0;
  unsigned long column = 0;
};

enum class EntryKind : std::uint8_t { trustee, filter, userQuota, dirQuota };

// The three sections of a document, in the order trovan save writes them.
enum class Section : std::uint8_t { trustees, userQuotas, dirQuotas };

// A set of the ten rights, one bit per right in the order of the rights table (read = bit 0).
using RightsSet = std::uint16_t;

// The rights of a trustee or filter as a document lists them: the set, which is what every
// comparison looks at, and the order of the elements where it is not the table's (a right
// named twice, or out of order). trovan restore sends the elements as written, so a request
// made for the entry needs that order; a list set from a RightsSet is in table order.
class RightsList {
public:
  // The elements kept in written order at most: more of them never fit trovan's rights field.
  static constexpr std::size_t kWrittenLimit = 80;

  RightsList(RightsSet set = 0) : set_(set) {}  // NOLINT: a set is a list in table order
  RightsList &operator=(RightsSet set) {
    set_ = set;
    written_.clear();
    return *this;
  }
  operator RightsSet() const { return set_; }  // NOLINT: compared as a set everywhere
  RightsSet set() const { return set_; }

  // The document names these rights next (one element each, in table order).
  RightsList &operator|=(RightsSet rights) {
    // The usual case, inline: one right, after those named so far in table order.
    if (written_.empty() && set_ < rights && (rights & (rights - 1)) == 0) {
      set_ = static_cast<RightsSet>(set_ | rights);
      return *this;
    }
    return add(rights);
  }

  // The elements' rights-table indices in written order; empty when they are the set's in table
  // order, each once.
  const std::string &written() const { return written_; }
  // Takes back an order given by written() (indices past the table are dropped).
  void setWritten(RightsSet set, std::string_view written);

private:
  RightsList &add(RightsSet rights);

  RightsSet set_ = 0;
  std::string written_;
};

// Fields of an entry whose text came (wholly or partly) from a CDATA section: the text goes
// into trovan's requests as it stands, not entity-encoded.
enum CdataField : std::uint8_t {
  kCdataPath = 1,
  kCdataName = 2,
  kCdataId = 4,
  kCdataAmount = 8,
};

struct Entry {
  EntryKind kind = EntryKind::trustee;
  Position at;      // the entry's element (<trustee>, <inheritedRightsFilter>, <user>, <directory>)
  Position pathAt;  // the <path> element that names its file or directory (trustee, filter, dir)
  bool ad = false;  // an AD user (type="adID"): trustee and user quota
  std::string path;        // decoded text: '/' paths of files, '\' paths of directory quotas
  std::string name;        // the user's name (Arbor dotted name, or an AD user's display name)
  std::string id;          // the AD user's SID text
  RightsList rights;       // trustee and filter
  std::string amount;      // quotaAmount text (user and directory quotas)
  std::string spaceUsed;   // kept to be written back; never compared
  std::string zid;         // the file's or directory's number; kept, never compared
  std::uint8_t cdata = 0;  // CdataField bits
  // The same texts as trovan's tag reader takes them: CDATA content as it stands, other text
  // still entity-encoded. They go into trovan's requests exactly so.
  std::string rawPath;
  std::string rawName;
  std::string rawId;
  std::string rawAmount;
};

// Section of an entry kind.
Section sectionOf(EntryKind kind);

// Names for messages and JSON: "trustee", "filter", "user quota"/"userQuota", ...
std::string_view kindName(EntryKind kind);         // words for people: "trustee", "user quota"
std::string_view kindKey(EntryKind kind);          // a JSON value: "trustee", "userQuota"
std::string_view sectionElement(Section section);  // "trusteeInfo", "userInfo", "dirInfo"

// The bit of a right element name ("read", "fileScan"), or 0 for a name outside the table.
RightsSet rightBit(std::string_view name);
// Lower-case letters of a set, in table order ("rwf").
std::string rightsLetters(RightsSet rights);
// The same letters appended to `out`.
void appendRightsLetters(RightsSet rights, std::string &out);
// Upper-case letters as the file system writes them in value="..." ("RWF").
std::string rightsValue(RightsSet rights);
// Empty elements in table order ("<read/><write/><fileScan/>").
std::string rightsElements(RightsSet rights);
// The elements as the list was written ("<write/><read/><read/>"), into `out` (cleared first).
void writtenElements(const RightsList &rights, std::string &out);

// The one path form entries are compared in: '\' separators become '/'.
std::string comparablePath(const Entry &entry);

// The comparison key of an entry, written into `key` (cleared first): kind, path form and user
// identity (an AD user's SID, an Arbor user's name). Rights, amounts, spaceUsed and zid are
// not part of it.
void entryKey(const Entry &entry, std::string &key);
// keyHash() of that key, made without writing the key: what every table of entries is keyed by.
std::uint64_t entryKeyHash(const Entry &entry);

// The user part of that key: how a trustee or user quota is known ('D' an AD user by its SID,
// 'N' an AD user quota without one by its name, 'A' an Arbor user by its name) and the text it
// is known by; form 0 for the kinds that name no user.
struct UserKey {
  char form = 0;
  std::string_view user;
  bool operator==(const UserKey &) const = default;
};
UserKey userKey(EntryKind kind, bool ad, std::string_view name, std::string_view id);

// The user an entry names, for messages: the Arbor name, or "SID (name)" for an AD user.
std::string userLabel(const Entry &entry);
