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

// The fixed part of an entry in the spool; its texts follow, each a 32-bit length and the bytes.
// A raw text the same as its decoded one (most are) is not written again: a bit of sameRaw says.
// Rights written out of table order follow the texts, flagged by kWrittenOrder.
struct Head {
  std::uint64_t line, column, pathLine, pathColumn;
  RightsSet rights;
  EntryKind kind;
  std::uint8_t ad, cdata, sameRaw;
};
constexpr std::uint8_t kWrittenOrder = 0x80;

// The decoded texts of an entry, and the raw ones beside them.
constexpr std::string Entry::*kDecoded[] = {&Entry::path, &Entry::name, &Entry::id, &Entry::amount};
constexpr std::string Entry::*kRaw[] = {&Entry::rawPath, &Entry::rawName, &Entry::rawId,
                                        &Entry::rawAmount};
constexpr std::string Entry::*kOthers[] = {&Entry::spaceUsed, &Entry::zid};

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
  if ((blocks_.size() + 1) * kBlockSize <= memoryLimit_) {
    // The buffer itself becomes the block; a new one takes its place.
    buffer_.resize(used_);
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

void EntrySpool::put(const void *bytes, std::size_t length) {
  const char *from = static_cast<const char *>(bytes);
  while (length > 0) {
    if (used_ == buffer_.size()) flush();
    const std::size_t part = std::min(length, buffer_.size() - used_);
    std::memcpy(buffer_.data() + used_, from, part);
    used_ += part;
    from += part;
    length -= part;
  }
}

void EntrySpool::putText(const std::string &text) {
  const auto length = static_cast<std::uint32_t>(text.size());
  put(&length, sizeof length);
  put(text.data(), text.size());
}

void EntrySpool::write(const Entry &entry) {
  Head head{};  // every byte set, padding too
  head.line = entry.at.line;
  head.column = entry.at.column;
  head.pathLine = entry.pathAt.line;
  head.pathColumn = entry.pathAt.column;
  head.rights = entry.rights;
  head.kind = entry.kind;
  head.ad = entry.ad ? 1 : 0;
  head.cdata = entry.cdata;
  for (std::size_t at = 0; at < std::size(kRaw); ++at)
    if (entry.*kRaw[at] == entry.*kDecoded[at])
      head.sameRaw = static_cast<std::uint8_t>(head.sameRaw | (1u << at));
  if (!entry.rights.written().empty())
    head.sameRaw = static_cast<std::uint8_t>(head.sameRaw | kWrittenOrder);
  put(&head, sizeof head);
  for (const auto text : kDecoded)
    putText(entry.*text);
  for (const auto text : kOthers)
    putText(entry.*text);
  for (std::size_t at = 0; at < std::size(kRaw); ++at)
    if ((head.sameRaw & (1u << at)) == 0) putText(entry.*kRaw[at]);
  if ((head.sameRaw & kWrittenOrder) != 0) putText(entry.rights.written());
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

bool EntrySpool::get(void *bytes, std::size_t length) {
  char *to = static_cast<char *>(bytes);
  while (length > 0) {
    if (taken_ == used_ && !fill()) return false;
    const std::size_t part = std::min(length, used_ - taken_);
    std::memcpy(to, buffer_.data() + taken_, part);
    taken_ += part;
    to += part;
    length -= part;
  }
  return true;
}

bool EntrySpool::getText(std::string &text) {
  std::uint32_t length = 0;
  if (!get(&length, sizeof length)) return false;
  text.resize(length);
  return get(text.data(), length);
}

bool EntrySpool::read(Entry &entry) {
  Head head;
  if (fd_ < 0 || !get(&head, sizeof head)) return false;
  entry.at = {head.line, head.column};
  entry.pathAt = {head.pathLine, head.pathColumn};
  entry.rights = head.rights;
  entry.kind = head.kind;
  entry.ad = head.ad != 0;
  entry.cdata = head.cdata;
  for (const auto text : kDecoded)
    if (!getText(entry.*text)) return false;
  for (const auto text : kOthers)
    if (!getText(entry.*text)) return false;
  for (std::size_t at = 0; at < std::size(kRaw); ++at) {
    if ((head.sameRaw & (1u << at)) != 0)
      entry.*kRaw[at] = entry.*kDecoded[at];
    else if (!getText(entry.*kRaw[at]))
      return false;
  }
  if ((head.sameRaw & kWrittenOrder) != 0) {
    if (!getText(written_)) return false;
    entry.rights.setWritten(head.rights, written_);
  }
  return true;
}
