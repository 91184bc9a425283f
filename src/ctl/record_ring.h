// A few blocks of memory shared by a process and the child it forks, passed round between
// them: the child (the writer) fills a block with records and hands it over, the parent (the
// reader) takes the blocks in the order they come and hands each back when it is done with
// it. Only small tokens go between the two ("block i holds n bytes" up, "block i is free"
// down, each way through a socket pair of its own), so that no record is copied through the
// kernel and no buffer is allocated per block. Either side that finds the other gone, or a
// token that does not hold together, stops; neither waits for a side that has ended.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string_view>

class RecordRing {
public:
  static constexpr std::size_t kBlocks = 4;
  static constexpr std::size_t kBlockSize = std::size_t{1} << 18;

  RecordRing() = default;
  ~RecordRing();  // closes this process's ends and unmaps the blocks
  RecordRing(const RecordRing &) = delete;
  RecordRing &operator=(const RecordRing &) = delete;

  // Maps the blocks and makes the socket pairs, before the fork. False (errno set) when either
  // cannot be made.
  bool open();
  // After the fork, each side keeps its own ends of the socket pairs.
  void becomeWriter();
  void becomeReader();

  // The writer's side. Room for `size` bytes (at most kBlockSize) in the block being filled;
  // when they do not fit, that block is handed over first and a free one taken, waiting for
  // the reader to free one if it must. nullptr when the reader is gone or sent nonsense.
  char *reserve(std::size_t size) {
    if (current_ >= 0 && size <= kBlockSize - used_)
      return blocks_ + static_cast<std::size_t>(current_) * kBlockSize + used_;
    return reserveAnother(size);
  }
  // The `size` bytes written at the room reserved last are the block's now.
  void commit(std::size_t size) { used_ += size; }
  // Hands over the block being filled if it holds anything (safe in a signal handler: one
  // send). False when the reader is gone.
  bool handOver();

  // The reader's side: the bytes of the next block handed over, after handing back the one
  // taken before. False at the writer's end or at a token that does not hold together (a
  // block out of range, a size over the block's).
  bool next(std::string_view &bytes);

  // This process's ends closed (the other side sees it gone); the blocks stay mapped.
  void close();
  // This side's sockets after the fork, to send and to receive on (tests speak to a side
  // through them).
  int sendEnd() const { return send_; }
  int receiveEnd() const { return receive_; }

private:
  char *blocks_ = nullptr;  // kBlocks blocks of kBlockSize bytes, shared
  // Tokens up (the writer's to the reader) and down, each a pair: the reader's end, the
  // writer's. One pair each way: a socket closed with tokens unread in it would make its
  // partner lose the tokens still unread on the partner's side.
  int up_[2] = {-1, -1};
  int down_[2] = {-1, -1};
  int send_ = -1;             // this side's, after the fork
  int receive_ = -1;          // this side's, after the fork
  int current_ = -1;          // the writer's block being filled, or the reader's block taken
  std::size_t used_ = 0;      // the writer's bytes in its block
  std::uint32_t unused_ = 0;  // the writer's blocks not filled yet: unused_ to kBlocks - 1

  char *reserveAnother(std::size_t size);
  bool takeFreeBlock();
};
