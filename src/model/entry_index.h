// The entries of one document held compactly by their key, so that a second document can be
// streamed against them: each entry's texts packed into large blocks, and an open-addressing
// table of 64-bit key hashes (16 bytes a slot, at most 3/4 full). Memory is about the size of the
// entries' texts, well below the document's own size.
#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "model/entry.h"
#include "model/hash_slots.h"

class EntryIndex {
public:
  // Adds an entry (kind, ad, path, name, id, rights, amount are kept). False when an entry of the
  // same key is already there; the first one stays.
  bool add(const Entry &entry);
  // The stored entry of the same key as `entry`, marked as matched, into `stored`. False if none.
  bool match(const Entry &entry, Entry &stored);
  // Every stored entry that no match() has found, in the order they were added.
  void forEachUnmatched(const std::function<void(const Entry &)> &visit) const;
  // Asks the processor for the table slot of the entry's key, to be added or matched a little
  // later: a lookup in a large table otherwise waits for memory.
  void prefetch(const Entry &entry) const;

  std::size_t size() const { return refs_.size(); }

private:
  static constexpr std::size_t kBlockSize = std::size_t(1) << 20;

  std::uint64_t store(const Entry &entry);
  // Reads the record at `at` into `entry`; returns the record's size.
  static std::size_t load(const char *at, Entry &entry);
  char *recordAt(std::uint64_t ref) const;
  // Whether the record at `ref` holds the entry of key `key_`, read into `scratch_`.
  bool holdsKey(std::uint64_t ref);

  std::vector<std::unique_ptr<char[]>> blocks_;
  std::size_t used_ = kBlockSize;    // bytes used in the last block
  HashSlots<std::uint64_t> refs_;    // block << 20 | offset of the entry's record, by key hash
  std::vector<std::size_t> filled_;  // bytes used in each block
  mutable std::string key_;          // mutable: prefetch() makes the key to find its slot
  std::string otherKey_;
  Entry scratch_;
};
