#include "ctl/record_ring.h"

#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <initializer_list>

namespace {

// "block holds size bytes", writer to reader.
struct HandedToken {
  std::uint32_t block;
  std::uint32_t size;
};
// "block is free", reader to writer.
struct FreedToken {
  std::uint32_t block;
};

// One token; a packet socket keeps each whole. MSG_NOSIGNAL: a side whose partner is gone gets
// an error, not SIGPIPE.
bool sendToken(int end, const void *token, std::size_t size) {
  ssize_t sent;
  do
    sent = send(end, token, size, MSG_NOSIGNAL);
  while (sent < 0 && errno == EINTR);
  return sent == static_cast<ssize_t>(size);
}

// One token of exactly `size` bytes; false at the partner's end or for a token of another size.
bool receiveToken(int end, void *token, std::size_t size) {
  char packet[sizeof(HandedToken) + 1];
  ssize_t received;
  do
    received = recv(end, packet, sizeof packet, 0);
  while (received < 0 && errno == EINTR);
  if (received != static_cast<ssize_t>(size)) return false;
  std::memcpy(token, packet, size);
  return true;
}

void closeEnd(int &end) {
  if (end >= 0) ::close(end);
  end = -1;
}

}  // namespace

RecordRing::~RecordRing() {
  close();
  if (blocks_ != nullptr) munmap(blocks_, kBlocks * kBlockSize);
}

bool RecordRing::open() {
  void *blocks = mmap(nullptr, kBlocks * kBlockSize, PROT_READ | PROT_WRITE,
                      MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (blocks == MAP_FAILED) return false;
  blocks_ = static_cast<char *>(blocks);
  for (int *const pair : {up_, down_})
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, pair) != 0) {
      const int error = errno;
      close();
      errno = error;
      return false;
    }
  return true;
}

void RecordRing::becomeWriter() {
  closeEnd(up_[0]);
  closeEnd(down_[0]);
  send_ = up_[1];
  receive_ = down_[1];
}

void RecordRing::becomeReader() {
  closeEnd(up_[1]);
  closeEnd(down_[1]);
  send_ = down_[0];
  receive_ = up_[0];
}

void RecordRing::close() {
  for (int *const pair : {up_, down_}) {
    closeEnd(pair[0]);
    closeEnd(pair[1]);
  }
  send_ = -1;
  receive_ = -1;
}

// reserve() when the block being filled has no room (or there is none).
char *RecordRing::reserveAnother(std::size_t size) {
  if (size > kBlockSize) return nullptr;
  if (!handOver()) return nullptr;
  if (current_ < 0 && !takeFreeBlock()) return nullptr;
  return blocks_ + static_cast<std::size_t>(current_) * kBlockSize + used_;
}

bool RecordRing::handOver() {
  if (current_ < 0 || used_ == 0) return true;
  const HandedToken token{static_cast<std::uint32_t>(current_), static_cast<std::uint32_t>(used_)};
  current_ = -1;
  used_ = 0;
  return sendToken(send_, &token, sizeof token);
}

// A block never filled, or else the next one the reader frees. The writer waits only when the
// reader has every block, so any block in range is one it may fill.
bool RecordRing::takeFreeBlock() {
  std::uint32_t block = unused_;
  if (unused_ < kBlocks) {
    ++unused_;
  } else {
    FreedToken token;
    if (!receiveToken(receive_, &token, sizeof token) || token.block >= kBlocks) return false;
    block = token.block;
  }
  current_ = static_cast<int>(block);
  used_ = 0;
  return true;
}

bool RecordRing::next(std::string_view &bytes) {
  if (current_ >= 0) {
    const FreedToken freed{static_cast<std::uint32_t>(current_)};
    current_ = -1;
    // A writer that is gone needs no block; its end shows at the next receive.
    sendToken(send_, &freed, sizeof freed);
  }
  HandedToken token;
  if (!receiveToken(receive_, &token, sizeof token) || token.block >= kBlocks ||
      token.size > kBlockSize)
    return false;
  current_ = static_cast<int>(token.block);
  bytes =
      std::string_view(blocks_ + static_cast<std::size_t>(token.block) * kBlockSize, token.size);
  return true;
}
