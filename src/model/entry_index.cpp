#include "model/entry_index.h"

#include <cstring>
#include <new>

namespace {

// A stored entry starts with its kind, the AD mark, its rights (two bytes) and whether a
// document entry matched it; its texts follow, each its length and the bytes. A length is
// written in 7-bit groups, low first: most take one byte.
constexpr std::size_t kMatchedByte = 4;
constexpr std::size_t kHeadSize = 5;

// The bytes a record of `size` bytes takes in its block: the next one starts on a multiple
// of 4.
std::size_t recordSpan(std::size_t size) { return (size + 3) & ~std::size_t(3); }

std::size_t lengthSize(std::size_t length) {
  std::size_t size = 1;
  for (; length >= 0x80; length >>= 7)
    ++size;
  return size;
}

void putText(char *&at, const std::string &text) {
  std::size_t length = text.size();
  for (; length >= 0x80; length >>= 7)
    *at++ = static_cast<char>(length | 0x80);
  *at++ = static_cast<char>(length);
  std::memcpy(at, text.data(), text.size());
  at += text.size();
}

std::string_view getText(const char *&at) {
  std::size_t length = 0;
  for (unsigned shift = 0;; shift += 7) {
    const auto byte = static_cast<unsigned char>(*at++);
    length |= static_cast<std::size_t>(byte & 0x7f) << shift;
    if ((byte & 0x80) == 0) break;
  }
  const std::string_view text(at, length);
  at += length;
  return text;
}

// A stored record read in place: its texts point into it.
struct Record {
  EntryKind kind;
  bool ad;
  bool matched;
  RightsSet rights;
  std::string_view path, name, id, amount;
  std::size_t size;  // bytes of the whole record

  explicit Record(const char *start) {
    kind = static_cast<EntryKind>(start[0]);
    ad = start[1] != 0;
    std::memcpy(&rights, start + 2, sizeof rights);
    matched = start[kMatchedByte] != 0;
    const char *at = start + kHeadSize;
    for (std::string_view *text : {&path, &name, &id, &amount})
      *text = getText(at);
    size = static_cast<std::size_t>(at - start);
  }

  void load(Entry &entry) const {
    entry.kind = kind;
    entry.ad = ad;
    entry.rights = rights;
    entry.path.assign(path);
    entry.name.assign(name);
    entry.id.assign(id);
    entry.amount.assign(amount);
  }
};

// Directory quota paths compare in one form, '\' and '/' alike (see comparablePath()).
bool samePath(EntryKind kind, std::string_view stored, const std::string &path) {
  if (kind != EntryKind::dirQuota) return stored == path;
  if (stored.size() != path.size()) return false;
  const auto slash = [](char c) { return c == '\\' ? '/' : c; };
  for (std::size_t at = 0; at < path.size(); ++at)
    if (slash(stored[at]) != slash(path[at])) return false;
  return true;
}

// Whether a record holds an entry of the same key as `entry`: what entryKey() makes of both
// is the same.
bool sameKey(const Record &record, const Entry &entry) {
  if (record.kind != entry.kind) return false;
  if (entry.kind != EntryKind::userQuota && !samePath(entry.kind, record.path, entry.path))
    return false;
  return userKey(record.kind, record.ad, record.name, record.id) ==
         userKey(entry.kind, entry.ad, entry.name, entry.id);
}

}  // namespace

std::uint64_t EntryIndex::hashOf(const Entry &entry) { return entryKeyHash(entry); }

// A reference is the record's block and its offset there in units of 4 bytes.
std::uint32_t EntryIndex::store(const Entry &entry) {
  std::size_t size = kHeadSize;
  for (const std::string *text : {&entry.path, &entry.name, &entry.id, &entry.amount})
    size += lengthSize(text->size()) + text->size();
  size = recordSpan(size);
  if (used_ + size > kBlockSize) {
    if (blocks_.size() == kBlockLimit) throw std::bad_alloc();
    const std::size_t blockSize = size > kBlockSize ? size : kBlockSize;
    blocks_.emplace_back(table_memory::allocateZeroed<char>(blockSize), BlockRelease{blockSize});
    filled_.push_back(0);
    used_ = 0;
  }
  const auto ref = static_cast<std::uint32_t>((blocks_.size() - 1) << (kBlockBits - kAlignBits) |
                                              used_ >> kAlignBits);
  char *at = blocks_.back().get() + used_;
  at[0] = static_cast<char>(entry.kind);
  at[1] = entry.ad ? 1 : 0;
  const RightsSet rights = entry.rights;
  std::memcpy(at + 2, &rights, sizeof rights);
  at[kMatchedByte] = 0;
  at += kHeadSize;
  putText(at, entry.path);
  putText(at, entry.name);
  putText(at, entry.id);
  putText(at, entry.amount);
  used_ += size;
  filled_.back() = used_;
  return ref;
}

char *EntryIndex::recordAt(std::uint32_t ref) const {
  constexpr unsigned kOffsetBits = kBlockBits - kAlignBits;
  return blocks_[ref >> kOffsetBits].get() +
         (std::size_t(ref & ((1u << kOffsetBits) - 1)) << kAlignBits);
}

void EntryIndex::prefetchRecord(std::uint64_t hash) const {
  const std::uint32_t *ref = refs_.first(hash);
  if (ref == nullptr) return;
  const char *record = recordAt(*ref);
  __builtin_prefetch(record, 1);
  __builtin_prefetch(record + 64, 1);  // a record seldom fits in the rest of one cache line
}

bool EntryIndex::add(const Entry &entry, std::uint64_t hash) {
  bool added = false;
  std::uint32_t *ref = refs_.findOrAdd(
      hash, [&](std::uint32_t at) { return sameKey(Record(recordAt(at)), entry); }, 0, added);
  // The record is stored only once the key is known to be new.
  if (added) *ref = store(entry);
  return added;
}

const char *EntryIndex::find(const Entry &entry, std::uint64_t hash) {
  if (refs_.size() == 0) return nullptr;
  const std::uint32_t *ref =
      refs_.find(hash, [&](std::uint32_t at) { return sameKey(Record(recordAt(at)), entry); });
  if (ref == nullptr) return nullptr;
  char *record = recordAt(*ref);
  record[kMatchedByte] = 1;
  return record;
}

bool EntryIndex::match(const Entry &entry, Entry &stored) {
  if (refs_.size() == 0) return false;  // an empty volume: no key to make
  const char *record = find(entry, hashOf(entry));
  if (record == nullptr) return false;
  Record(record).load(stored);
  return true;
}

bool EntryIndex::match(const Entry &entry, std::uint64_t hash, StoredValue &stored) {
  const char *record = find(entry, hash);
  if (record == nullptr) return false;
  const Record read(record);
  stored.rights = read.rights;
  stored.amount = read.amount;
  return true;
}

void EntryIndex::forEachUnmatched(const std::function<void(const Entry &)> &visit) const {
  Entry entry;
  for (std::size_t block = 0; block < blocks_.size(); ++block) {
    const char *at = blocks_[block].get();
    for (std::size_t offset = 0; offset < filled_[block];) {
      const Record record(at + offset);
      if (!record.matched) {
        record.load(entry);
        visit(entry);
      }
      offset += recordSpan(record.size);
    }
  }
}
