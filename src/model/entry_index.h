// The entries of one document held compactly by their key, so that a second document can be
// streamed against them: each entry's texts packed into large blocks, and an open-addressing
// table of 64-bit key hashes, each with a 4-byte reference to its record (12 bytes a slot, at
// most 3/4 full). Memory is about the size of the entries' texts, well below the document's own
// size. Keys are compared where they are stored, never copied out.
#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "model/entry.h"
#include "model/hash_slots.h"

// What a stored entry holds beyond its key: valid until the index changes.
struct StoredValue {
  RightsSet rights = 0;
  std::string_view amount;
};

class EntryIndex {
public:
  // Adds an entry (kind, ad, path, name, id, rights, amount are kept). False when an entry of the
  // same key is already there; the first one stays.
  bool add(const Entry &entry) { return add(entry, hashOf(entry)); }
  // The same, with the entry's key hash already made: keyHash() of its entryKey(), as the
  // document reader gives it.
  bool add(const Entry &entry, std::uint64_t hash);
  // The stored entry of the same key as `entry`, marked as matched, into `stored`. False if none.
  bool match(const Entry &entry, Entry &stored);
  // The same, giving only the stored entry's value, the key hash already made.
  bool match(const Entry &entry, std::uint64_t hash, StoredValue &stored);
  // Every stored entry that no match() has found, in the order they were added.
  void forEachUnmatched(const std::function<void(const Entry &)> &visit) const;
  // Asks the processor for the table slot of a key hash, to be added or matched a little
  // later: a lookup in a large table otherwise waits for memory.
  void prefetch(std::uint64_t hash) const { refs_.prefetch(hash); }
  // Then asks for the stored record under that slot, to be matched a little later: the records
  // of a document given in another order lie at random places.
  void prefetchRecord(std::uint64_t hash) const;

  std::size_t size() const { return refs_.size(); }
  // Makes room for the next entry of a document read `offset` bytes into on `fd` (see
  // HashSlots::makeRoom()).
  void makeRoom(unsigned long long offset, int fd) { refs_.makeRoom(offset, fd); }

private:
  // Records are packed into blocks of one huge page, so that reaching a record at a random
  // place does not also miss the processor's address cache. A record starts on a multiple of 4
  // bytes: a reference counts in those, up to 8,192 blocks (16 GiB of records).
  static constexpr std::size_t kBlockBits = 21;
  static constexpr std::size_t kBlockSize = std::size_t(1) << kBlockBits;
  static constexpr std::size_t kAlignBits = 2;
  static constexpr std::size_t kBlockLimit = std::size_t(1) << (32 - kBlockBits + kAlignBits);
  struct BlockRelease {
    std::size_t size;
    void operator()(char *bytes) const { table_memory::release(bytes, size); }
  };

  std::uint64_t hashOf(const Entry &entry);
  std::uint32_t store(const Entry &entry);
  char *recordAt(std::uint32_t ref) const;
  // The record of `entry`'s key, marked as matched; null if none.
  const char *find(const Entry &entry, std::uint64_t hash);

  std::vector<std::unique_ptr<char[], BlockRelease>> blocks_;
  std::size_t used_ = kBlockSize;    // bytes used in the last block
  HashSlots<std::uint32_t> refs_;    // where each record is (see store()), by key hash
  std::vector<std::size_t> filled_;  // bytes used in each block
};
