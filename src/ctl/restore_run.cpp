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
#include <initializer_list>
#include <string_view>

#include "channel/admin_channel.h"
#include "ctl/record_ring.h"
#include "document/run_settings.h"
#include "document/tag_reader_state.h"
#include "restore/restore_driver.h"

namespace {

// Records from the child: a request read back into its parts ('P': the parts' head, then
// their texts), a request that is none of trovan's forms ('R': its bytes), or the end ('S', the
// status in place of the length). Each carries how far trovan had come in the document.
struct RecordHead {
  std::uint64_t parsed;  // the bytes trovan's reader had gone past
  std::uint64_t read;    // the bytes it had read
  std::uint32_t length;  // of what follows the head
  char type;
};

// A read request's parts: what the comparison needs of it, and its texts' sizes (the texts
// follow in this order: file name, user, volume, amount).
struct PartsHead {
  RequestKind kind;
  std::uint8_t flags;  // kAd, kGemel, kUnknownRight
  RightsSet rights;
  std::uint32_t sizes[4];
};
constexpr std::uint8_t kAd = 1, kGemel = 2, kUnknownRight = 4;

// The largest record: a request fills at most trovan's request buffer, and reading it back
// never makes its texts longer.
constexpr std::size_t kRecordLimit = sizeof(RecordHead) + sizeof(PartsHead) + kRequestBufferSize;
// Records never straddle the ring's blocks: the largest fits one.
static_assert(kRecordLimit <= RecordRing::kBlockSize);

// Replies the restore takes as a success. The description is read only when the result is not
// 0, so there is none. A request read back gets the reply element of its own kind; one that is
// none of trovan's forms gets every kind's, the likeliest first.
constexpr std::string_view kFittedReplies[] = {
    "<addTrustee><result value=\"0\"></result></addTrustee>",
    "<modifyInheritedRightsFilter><result value=\"0\"></result></modifyInheritedRightsFilter>",
    "<userSpaceRestrictions><result value=\"0\"></result></userSpaceRestrictions>",
    "<addQuota><result value=\"0\"></result></addQuota>",
};
constexpr std::string_view kAnyReply =
    "<addTrustee><result value=\"0\"></result></addTrustee><modifyInheritedRightsFilter>"
    "<result value=\"0\"></result></modifyInheritedRightsFilter><addQuota><result value=\"0\">"
    "</result></addQuota><userSpaceRestrictions><result value=\"0\"></result>"
    "</userSpaceRestrictions>";

// The child's side: records written straight into the ring's block being filled, handed over
// when it is full, at the end, and when the process ends otherwise (exit, or a signal that ends
// it), so that none is lost. The child ends when the parent is gone.
struct ChildRecords {
  RecordRing *ring = nullptr;
  bool parts = false;    // requests go as their parts when they can
  SentRequestView read;  // the request being read back
  SentRequest decoded;   // its texts that the file system decodes (storage for every request)
};
ChildRecords *childRecords = nullptr;

void flushRecords() {
  if (!childRecords->ring->handOver()) _exit(3);
}

// Reserves a record of `type` with `size` bytes after its head, writes the head (`length`
// in it) and returns where those bytes go.
inline char *beginRecord(char type, std::uint64_t length, std::size_t size) {
  char *const room = childRecords->ring->reserve(sizeof(RecordHead) + size);
  if (room == nullptr) _exit(3);
  RecordHead head{};  // zeroed, padding too: every byte handed over is set
  const tag_reader_state::InputState &input = tag_reader_state::input;
  head.read = input.consumed;
  // The read-ahead holds the last `loaded` bytes read; the reader stands at `position` in it.
  head.parsed = input.consumed - (input.loaded - input.position);
  head.length = static_cast<std::uint32_t>(length);
  head.type = type;
  std::memcpy(room, &head, sizeof head);
  return room + sizeof head;
}

// A record of `type` with `bytes` after its head ('R'), or none ('S': `length` is the status).
void addRecord(char type, std::uint64_t length, std::string_view bytes = {}) {
  char *const room = beginRecord(type, length, bytes.size());
  if (!bytes.empty()) std::memcpy(room, bytes.data(), bytes.size());
  childRecords->ring->commit(sizeof(RecordHead) + bytes.size());
}

// A request read back, as a 'P' record: the parts' head, then the texts that are not empty.
void addParts(const SentRequestView &request) {
  const std::string_view texts[] = {request.fileName, request.user, request.volume, request.amount};
  PartsHead parts{request.kind,
                  static_cast<std::uint8_t>((request.ad ? kAd : 0) | (request.gemel ? kGemel : 0) |
                                            (request.unknownRight ? kUnknownRight : 0)),
                  request.rights,
                  {}};
  std::size_t length = sizeof parts;
  for (int text = 0; text < 4; ++text) {
    parts.sizes[text] = static_cast<std::uint32_t>(texts[text].size());
    length += texts[text].size();
  }
  char *at = beginRecord('P', length, length);
  std::memcpy(at, &parts, sizeof parts);
  at += sizeof parts;
  for (const std::string_view text : texts)
    if (!text.empty()) {
      std::memcpy(at, text.data(), text.size());
      at += text.size();
    }
  childRecords->ring->commit(sizeof(RecordHead) + length);
}

// A request in the form the comparison takes: its parts when it is one of trovan's forms
// (fewer bytes to hand over than the request), its bytes when it is not. Returns the reply
// that fits it.
std::string_view addRequest(std::string_view bytes) {
  ChildRecords &records = *childRecords;
  if (!records.parts || !readSentRequest(bytes, records.read, records.decoded)) {
    addRecord('R', bytes.size(), bytes);
    return kAnyReply;
  }
  addParts(records.read);
  return kFittedReplies[static_cast<int>(records.read.kind)];
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

// Each request goes with how far trovan had come in the document when it made it (see
// RecordHead), and gets the reply that fits it.
int standIn(const char *request, std::size_t length, void *) {
  const std::string_view reply = addRequest(std::string_view(request, length));
  // The reply as a string of the buffer's size at most, cut if it must be.
  const std::size_t room = static_cast<std::size_t>(replyBufferSize);
  const std::size_t size = reply.size() < room ? reply.size() : room - (room > 0 ? 1 : 0);
  if (room > 0) {
    std::memcpy(replyBuffer, reply.data(), size);
    replyBuffer[size] = '\0';
  }
  return 0;
}

[[noreturn]] void runChild(RecordRing &ring, bool parts, int fd, const CheckOptions &options,
                           const RestoreSettings &settings) {
  // What trovan prints is not part of the check's result.
  const int quiet = open("/dev/null", O_WRONLY);
  if (quiet >= 0) {
    dup2(quiet, 1);
    dup2(quiet, 2);
    close(quiet);
  }
  childRecords = new ChildRecords;
  childRecords->ring = &ring;
  childRecords->parts = parts;
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
  addRecord('S', static_cast<std::uint32_t>(status));
  flushRecords();
  std::fflush(stdout);
  _exit(0);
}

// The parent's side: takes the child's records block by block from the ring and hands each
// request to `sink`, until the end record, a record that does not hold together, or the
// child's end.
class RecordReader {
public:
  explicit RecordReader(RecordRing &ring) : ring_(ring) {}

  void run(RequestSink &sink, RestoreOutcome &outcome) {
    std::string_view block;
    while (ring_.next(block)) {
      while (!block.empty()) {
        RecordHead head;
        if (block.size() < sizeof head) return;
        std::memcpy(&head, block.data(), sizeof head);
        if (head.type == 'S') {
          outcome.ran = true;
          outcome.status = static_cast<int>(static_cast<std::int32_t>(head.length));
          return;
        }
        if ((head.type != 'R' && head.type != 'P') || head.length > block.size() - sizeof head)
          return;
        const char *bytes = block.data() + sizeof head;
        block.remove_prefix(sizeof head + head.length);
        if (head.type == 'R')
          sink.request(std::string_view(bytes, head.length), {head.parsed, head.read});
        else if (readParts(bytes, head.length))
          sink.readRequest(request_, {head.parsed, head.read});
        else
          return;
      }
    }
  }

private:
  // The request of a 'P' record into request_ (its texts are the record's); false when the
  // record does not hold together.
  bool readParts(const char *bytes, std::size_t length) {
    PartsHead parts;
    if (length < sizeof parts) return false;
    std::memcpy(&parts, bytes, sizeof parts);
    std::size_t at = sizeof parts;
    std::string_view *const texts[] = {&request_.fileName, &request_.user, &request_.volume,
                                       &request_.amount};
    for (int text = 0; text < 4; ++text) {
      if (parts.sizes[text] > length - at) return false;
      *texts[text] = std::string_view(bytes + at, parts.sizes[text]);
      at += parts.sizes[text];
    }
    request_.kind = parts.kind;
    request_.ad = (parts.flags & kAd) != 0;
    request_.gemel = (parts.flags & kGemel) != 0;
    request_.unknownRight = (parts.flags & kUnknownRight) != 0;
    request_.rights = parts.rights;
    return at == length;
  }

  RecordRing &ring_;
  SentRequestView request_;
};

}  // namespace

RestoreOutcome runRestore(int fd, const CheckOptions &options, const RestoreSettings &settings,
                          RequestSink &sink) {
  RestoreOutcome outcome;
  RecordRing ring;
  if (!ring.open()) {
    outcome.failure = std::strerror(errno);
    return outcome;
  }
  std::fflush(stdout);
  std::fflush(stderr);
  const pid_t child = fork();
  if (child < 0) {
    outcome.failure = std::strerror(errno);
    return outcome;
  }
  if (child == 0) {
    ring.becomeWriter();
    runChild(ring, sink.takesParts(), fd, options, settings);
  }
  ring.becomeReader();
  RecordReader(ring).run(sink, outcome);
  ring.close();  // a child still running ends when it next hands over or waits for a block
  int waitStatus = 0;
  while (waitpid(child, &waitStatus, 0) < 0 && errno == EINTR) {
  }
  if (WIFSIGNALED(waitStatus)) outcome.signal = WTERMSIG(waitStatus);
  return outcome;
}
