#include "ctl/restore_run.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "channel/admin_channel.h"
#include "document/run_settings.h"
#include "document/tag_reader_state.h"
#include "restore/restore_driver.h"

namespace {

// Records from the child: a request ('R', the offset trovan had read to, the length, the
// bytes) or the end ('S', the status in place of the length).
struct RecordHead {
  char type;
  std::uint64_t offset;
  std::uint64_t length;
};

// The largest record: a request fills at most trovan's request buffer.
constexpr std::size_t kRecordLimit = sizeof(RecordHead) + kRequestBufferSize;
// Records travel through the pipe in blocks of this size, not one write or read each.
constexpr std::size_t kBlockSize = 1 << 18;

// A reply the restore takes as a success, whichever request it answers.
constexpr char kSuccessReply[] =
    "<quillReply>\n<addTrustee><modifyInheritedRightsFilter><userSpaceRestrictions><addQuota>"
    "<result value=\"0\"><description>success</description></result>\n</quillReply>\n";

bool writeAll(int fd, const void *data, std::size_t size) {
  const char *bytes = static_cast<const char *>(data);
  while (size > 0) {
    const ssize_t count = write(fd, bytes, size);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    bytes += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

// The child's side: records gathered in one block, written when it is full, at the end, and
// when the process ends otherwise (exit, or a signal that ends it), so that none is lost.
struct ChildRecords {
  int pipe = -1;
  std::size_t used = 0;
  char block[kBlockSize];
};
ChildRecords *childRecords = nullptr;

void flushRecords() {
  ChildRecords &records = *childRecords;
  if (records.used > 0 && !writeAll(records.pipe, records.block, records.used)) _exit(3);
  records.used = 0;
}

void addRecord(const RecordHead &head, const char *bytes, std::size_t length) {
  ChildRecords &records = *childRecords;
  if (records.used + sizeof head + length > sizeof records.block) flushRecords();
  std::memcpy(records.block + records.used, &head, sizeof head);
  if (length > 0) std::memcpy(records.block + records.used + sizeof head, bytes, length);
  records.used += sizeof head + length;
}

void flushAndDie(int signal) {
  flushRecords();
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

// Signals whose handling is left to the system (a sanitizer's own handlers stay in place).
void flushAtEnds() {
  std::atexit(flushRecords);
  for (const int signal : {SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL}) {
    struct sigaction current {};
    if (sigaction(signal, nullptr, &current) == 0 && current.sa_handler == SIG_DFL)
      std::signal(signal, flushAndDie);
  }
}

// Each request goes with how far trovan had read the document when it made it: the bytes its
// reader has taken in.
int standIn(const char *request, std::size_t length, void *) {
  addRecord({'R', tag_reader_state::input.consumed, length}, request, length);
  // The reply as a string of the buffer's size at most, cut if it must be.
  const std::size_t room = static_cast<std::size_t>(replyBufferSize);
  const std::size_t size = sizeof kSuccessReply <= room ? sizeof kSuccessReply : room;
  if (size > 0) {
    std::memcpy(replyBuffer, kSuccessReply, size);
    replyBuffer[size - 1] = '\0';
  }
  return 0;
}

[[noreturn]] void runChild(int pipe, int fd, const CheckOptions &options,
                           const RestoreSettings &settings) {
  // What trovan prints is not part of the check's result.
  const int quiet = open("/dev/null", O_WRONLY);
  if (quiet >= 0) {
    dup2(quiet, 1);
    dup2(quiet, 2);
    close(quiet);
  }
  childRecords = new ChildRecords;
  childRecords->pipe = pipe;
  flushAtEnds();
  if (!allocateReplyBuffer()) _exit(4);
  inputFd = fd;
  showActions = 0;
  debug = 0;
  arborUsers = settings.arborUsers ? 1 : 0;
  adUsers = settings.adUsers ? 1 : 0;
  reflectOnGemel = options.noGemel ? 0 : 1;
  setRequestStandIn(standIn, nullptr);
  const int status =
      restoreDocument(options.volume.c_str(), options.mountPoint.c_str(),
                      settings.hasFilter ? &settings.filter : nullptr, options.mask.c_str(),
                      options.treeGiven ? options.tree.c_str() : nullptr, 0);
  addRecord({'S', 0, static_cast<std::uint64_t>(static_cast<std::int64_t>(status))}, nullptr, 0);
  flushRecords();
  std::fflush(stdout);
  _exit(0);
}

// The parent's side: reads the child's records in blocks and hands each request to `sink`,
// until the end record or the pipe's end.
class RecordReader {
public:
  explicit RecordReader(int pipe) : pipe_(pipe), block_(new char[kRecordLimit + kBlockSize]) {}

  void run(RequestSink &sink, RestoreOutcome &outcome) {
    for (;;) {
      RecordHead head;
      if (!have(sizeof head)) return;
      std::memcpy(&head, block_.get() + start_, sizeof head);
      if (head.type == 'S') {
        outcome.ran = true;
        outcome.status = static_cast<int>(static_cast<std::int64_t>(head.length));
        return;
      }
      if (head.type != 'R' || head.length > kRequestBufferSize) return;
      if (!have(sizeof head + head.length)) return;
      const char *bytes = block_.get() + start_ + sizeof head;
      start_ += sizeof head + head.length;
      sink.request(std::string_view(bytes, head.length), head.offset);
    }
  }

private:
  // Makes `size` bytes (at most kRecordLimit) available at start_; false at the pipe's end.
  bool have(std::size_t size) {
    if (end_ - start_ >= size) return true;
    std::memmove(block_.get(), block_.get() + start_, end_ - start_);
    end_ -= start_;
    start_ = 0;
    while (end_ < size) {
      const ssize_t count = read(pipe_, block_.get() + end_, kRecordLimit + kBlockSize - end_);
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) return false;
      end_ += static_cast<std::size_t>(count);
    }
    return true;
  }

  int pipe_;
  std::unique_ptr<char[]> block_;
  std::size_t start_ = 0;
  std::size_t end_ = 0;
};

}  // namespace

RestoreOutcome runRestore(int fd, const CheckOptions &options, const RestoreSettings &settings,
                          RequestSink &sink) {
  RestoreOutcome outcome;
  int pipes[2];
  if (pipe2(pipes, O_CLOEXEC) != 0) {
    outcome.failure = std::strerror(errno);
    return outcome;
  }
  // Room for several blocks, so that neither side waits for the other at every block (a
  // smaller pipe is no error, only slower).
  fcntl(pipes[1], F_SETPIPE_SZ, 1 << 20);
  std::fflush(stdout);
  std::fflush(stderr);
  const pid_t child = fork();
  if (child < 0) {
    outcome.failure = std::strerror(errno);
    close(pipes[0]);
    close(pipes[1]);
    return outcome;
  }
  if (child == 0) {
    close(pipes[0]);
    runChild(pipes[1], fd, options, settings);
  }
  close(pipes[1]);
  RecordReader(pipes[0]).run(sink, outcome);
  close(pipes[0]);
  int waitStatus = 0;
  while (waitpid(child, &waitStatus, 0) < 0 && errno == EINTR) {
  }
  if (WIFSIGNALED(waitStatus)) outcome.signal = WTERMSIG(waitStatus);
  return outcome;
}
