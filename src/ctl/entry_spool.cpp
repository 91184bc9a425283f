#include "ctl/entry_spool.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "ctl/scratch_file.h"

namespace {

constexpr std::size_t kBlockSize = 1 << 20;

// An entry in the spool: its length, then kind, AD mark, CDATA bits, flags and rights, its four
// place numbers, and its texts, each a length and the bytes. Lengths and numbers are written in
// 7-bit groups, low first (most take one or two bytes). A raw text the same as its decoded one
// (most are) is not written again: a flag bit says so. Rights written out of table order come
// last, flagged by kWrittenOrder.
constexpr std::size_t kFixedSize = 6;
constexpr std::uint8_t kWrittenOrder = 0x80;
constexpr std::size_t kLongestNumber = 10;

// The decoded texts of an entry, and the raw ones beside them.
constexpr std::string Entry::*kDecoded[] = {&Entry::path, &Entry::name, &Entry::id, &Entry::amount};
constexpr std::string Entry::*kRaw[] = {&Entry::rawPath, &Entry::rawName, &Entry::rawId,
                                        &Entry::rawAmount};
constexpr std::string Entry::*kOthers[] = {&Entry::spaceUsed, &Entry::zid};

std::size_t numberSize(std::uint64_t value) {
  std::size_t size = 1;
  for (; value >= 0x80; value >>= 7)
    ++size;
  return size;
}

char *putNumber(char *at, std::uint64_t value) {
  for (; value >= 0x80; value >>= 7)
    *at++ = static_cast<char>(value | 0x80);
  *at++ = static_cast<char>(value);
  return at;
}

// Null when the number does not end before `end` (or is too long).
const char *getNumber(const char *at, const char *end, std::uint64_t &value) {
  value = 0;
  for (unsigned shift = 0; at < end && shift < 64; shift += 7) {
    const auto byte = static_cast<unsigned char>(*at++);
    value |= static_cast<std::uint64_t>(byte & 0x7f) << shift;
    if ((byte & 0x80) == 0) return at;
  }
  return nullptr;
}

char *putText(char *at, std::string_view text) {
  at = putNumber(at, text.size());
  std::memcpy(at, text.data(), text.size());
  return at + text.size();
}

const char *getText(const char *at, const char *end, std::string &text) {
  std::uint64_t length = 0;
  at = getNumber(at, end, length);
  if (at == nullptr || length > static_cast<std::uint64_t>(end - at)) return nullptr;
  text.assign(at, length);
  return at + length;
}

// The texts an entry's record holds, in order.
template <typename Visit> void forEachText(const Entry &entry, std::uint8_t flags, Visit visit) {
  for (const auto text : kDecoded)
    visit(std::string_view(entry.*text));
  for (const auto text : kOthers)
    visit(std::string_view(entry.*text));
  for (std::size_t at = 0; at < std::size(kRaw); ++at)
    if ((flags & (1u << at)) == 0) visit(std::string_view(entry.*kRaw[at]));
  if ((flags & kWrittenOrder) != 0) visit(std::string_view(entry.rights.written()));
}

}  // namespace

EntrySpool::~EntrySpool() {
  if (fd_ >= 0) close(fd_);
}

int EntrySpool::open() {
  fd_ = scratchFile();
  if (fd_ < 0) return errno;
  buffer_.resize(kBlockSize);
  return 0;
}

void EntrySpool::flush() {
  if (used_ == 0) return;
  if (memoryUsed_ + used_ <= memoryLimit_) {
    // The buffer itself becomes the block; a new one takes its place.
    buffer_.resize(used_);
    memoryUsed_ += used_;
    blocks_.push_back(std::move(buffer_));
    buffer_.assign(kBlockSize, '\0');
    used_ = 0;
    return;
  }
  for (std::size_t done = 0; done < used_ && error_ == 0;) {
    const ssize_t count = ::write(fd_, buffer_.data() + done, used_ - done);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) error_ = count < 0 ? errno : EIO;
    if (count > 0) done += static_cast<std::size_t>(count);
  }
  used_ = 0;
}

void EntrySpool::write(const Entry &entry) {
  std::uint8_t flags = 0;
  for (std::size_t at = 0; at < std::size(kRaw); ++at)
    if (entry.*kRaw[at] == entry.*kDecoded[at])
      flags = static_cast<std::uint8_t>(flags | (1u << at));
  if (!entry.rights.written().empty()) flags = static_cast<std::uint8_t>(flags | kWrittenOrder);
  const std::uint64_t places[] = {entry.at.line, entry.at.column, entry.pathAt.line,
                                  entry.pathAt.column};
  std::size_t size = kFixedSize;
  for (const std::uint64_t place : places)
    size += numberSize(place);
  forEachText(entry, flags,
              [&size](std::string_view text) { size += numberSize(text.size()) + text.size(); });
  const std::size_t whole = numberSize(size) + size;
  if (buffer_.size() - used_ < whole) flush();
  if (buffer_.size() - used_ < whole) buffer_.resize(used_ + whole);  // a record past a block
  char *at = putNumber(buffer_.data() + used_, size);
  const RightsSet rights = entry.rights;
  at[0] = static_cast<char>(entry.kind);
  at[1] = entry.ad ? 1 : 0;
  at[2] = static_cast<char>(entry.cdata);
  at[3] = static_cast<char>(flags);
  std::memcpy(at + 4, &rights, sizeof rights);
  at += kFixedSize;
  for (const std::uint64_t place : places)
    at = putNumber(at, place);
  forEachText(entry, flags, [&at](std::string_view text) { at = putText(at, text); });
  used_ += whole;
  ++count_;
}

int EntrySpool::rewind() {
  flush();
  if (error_ == 0 && lseek(fd_, 0, SEEK_SET) != 0) error_ = errno;
  used_ = taken_ = 0;
  return error_;
}

bool EntrySpool::fill() {
  std::memmove(buffer_.data(), buffer_.data() + taken_, used_ - taken_);
  used_ -= taken_;
  taken_ = 0;
  if (nextBlock_ < blocks_.size()) {
    // The memory blocks first, in order; each is let go once taken.
    std::vector<char> &block = blocks_[nextBlock_++];
    buffer_.resize(used_ + block.size());
    std::memcpy(buffer_.data() + used_, block.data(), block.size());
    used_ += block.size();
    std::vector<char>().swap(block);
    return true;
  }
  if (buffer_.size() - used_ < kBlockSize) buffer_.resize(used_ + kBlockSize);
  for (;;) {
    const ssize_t count = ::read(fd_, buffer_.data() + used_, buffer_.size() - used_);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) error_ = errno;
    if (count > 0) used_ += static_cast<std::size_t>(count);
    return count > 0;
  }
}

bool EntrySpool::available(std::size_t length) {
  while (used_ - taken_ < length)
    if (!fill()) return false;
  return true;
}

bool EntrySpool::read(Entry &entry) {
  if (fd_ < 0) return false;
  available(kLongestNumber);  // fewer at the end
  if (taken_ == used_) return false;
  std::uint64_t size = 0;
  const char *start = buffer_.data() + taken_;
  const char *at = getNumber(start, buffer_.data() + used_, size);
  if (at == nullptr || size < kFixedSize) return corrupt();
  const auto head = static_cast<std::size_t>(at - start);
  if (!available(head + size)) return corrupt();
  at = buffer_.data() + taken_ + head;  // the buffer may have moved
  const char *end = at + size;
  entry.kind = static_cast<EntryKind>(at[0]);
  entry.ad = at[1] != 0;
  entry.cdata = static_cast<std::uint8_t>(at[2]);
  const auto flags = static_cast<std::uint8_t>(at[3]);
  RightsSet rights = 0;
  std::memcpy(&rights, at + 4, sizeof rights);
  entry.rights = rights;
  at += kFixedSize;
  std::uint64_t places[4] = {};
  for (std::uint64_t &place : places)
    if (at = getNumber(at, end, place); at == nullptr) return corrupt();
  entry.at = {places[0], places[1]};
  entry.pathAt = {places[2], places[3]};
  for (const auto text : kDecoded)
    if (at = getText(at, end, entry.*text); at == nullptr) return corrupt();
  for (const auto text : kOthers)
    if (at = getText(at, end, entry.*text); at == nullptr) return corrupt();
  for (std::size_t index = 0; index < std::size(kRaw); ++index) {
    if ((flags & (1u << index)) != 0)
      entry.*kRaw[index] = entry.*kDecoded[index];
    else if (at = getText(at, end, entry.*kRaw[index]); at == nullptr)
      return corrupt();
  }
  if ((flags & kWrittenOrder) != 0) {
    if (at = getText(at, end, written_); at == nullptr) return corrupt();
    entry.rights.setWritten(rights, written_);
  }
  taken_ += head + size;
  return true;
}

bool EntrySpool::corrupt() {
  if (error_ == 0) error_ = EIO;
  return false;
}
