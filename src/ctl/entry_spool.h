// Entries set aside in a compact binary form, in big blocks: apply plans the whole document
// before it sends anything, and keeps the changes here rather than in a document that would have
// to be parsed again. The first blocks stay in memory, up to a bound; the rest go to a temporary
// file (writing a file costs the system far more than keeping memory).
#pragma once
#include <cstddef>
#include <string>
#include <vector>

#include "model/entry.h"

class EntrySpool {
public:
  // Bytes of blocks kept in memory at most.
  static constexpr std::size_t kMemoryLimit = std::size_t{256} << 20;

  explicit EntrySpool(std::size_t memoryLimit = kMemoryLimit) : memoryLimit_(memoryLimit) {}
  ~EntrySpool();
  EntrySpool(const EntrySpool &) = delete;
  EntrySpool &operator=(const EntrySpool &) = delete;

  // Makes the temporary file. Returns 0 or errno.
  int open();
  void write(const Entry &entry);
  // Ends the writing and goes back to the first entry. Returns 0 or the errno of a failed write.
  int rewind();
  // The next entry, every field set; false at the end (or after a read error: error()).
  bool read(Entry &entry);
  int error() const { return error_; }
  unsigned long count() const { return count_; }
  // Blocks written to memory rather than to the file.
  std::size_t memoryBlocks() const { return blocks_.size(); }

private:
  // Whether `length` bytes are ready in the buffer past those taken (reading more if need be).
  bool available(std::size_t length);
  bool corrupt();
  bool fill();
  void flush();

  std::size_t memoryLimit_;
  std::vector<std::vector<char>> blocks_;  // the first blocks written, in order
  std::size_t memoryUsed_ = 0;             // their bytes
  std::size_t nextBlock_ = 0;              // reading: the block to take next
  int fd_ = -1;
  int error_ = 0;
  unsigned long count_ = 0;
  std::vector<char> buffer_;
  std::size_t used_ = 0;   // writing: bytes in the buffer; reading: the end of what was read
  std::size_t taken_ = 0;  // reading: bytes of the buffer already taken
  std::string written_;    // reading: a rights order
};
