// A compact set of entry keys, to find the same entry given twice in a streamed document: only a
// 64-bit hash of each key and the line of its first occurrence are kept (a 12-byte slot an entry
// in an open-addressing table at most 3/4 full), never the keys themselves.
#pragma once
#include <cstdint>
#include <string_view>

#include "model/hash_slots.h"

class KeySet {
public:
  // Adds a key first seen on `line`. Returns 0 when it is new, else the line of its first
  // occurrence. Two different keys share a hash with a chance of about n*n/2^65.
  unsigned long insert(std::string_view key, unsigned long line);
  // The same for a key given by its hash (keyHash()).
  unsigned long insertHash(std::uint64_t hash, unsigned long line);
  // Asks the processor for the slots of a hash, to be inserted a little later.
  void prefetch(std::uint64_t hash) const { lines_.prefetch(hash); }

  std::size_t size() const { return lines_.size(); }
  // Makes room for the next key of a document read `offset` bytes into on `fd` (see
  // HashSlots::makeRoom()).
  void makeRoom(unsigned long long offset, int fd) { lines_.makeRoom(offset, fd); }
  // Forgets every key, keeping the memory (a set reused for another document grows no more).
  void clear() { lines_.clear(); }

private:
  HashSlots<std::uint32_t> lines_;
};
