#include "ctl/restore_run.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "channel/admin_channel.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "restore/restore_driver.h"

namespace {

// Records from the child: a request ('R', the offset trovan had read to, the length, the
// bytes) or the end ('S', the status).
struct RecordHead {
  char type;
  std::uint64_t offset;
  std::uint64_t length;
};

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

bool readAll(int fd, void *data, std::size_t size) {
  char *bytes = static_cast<char *>(data);
  while (size > 0) {
    const ssize_t count = read(fd, bytes, size);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    bytes += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

struct ChildContext {
  int pipe;
  int documentFd;
};

int standIn(const char *request, std::size_t length, void *context) {
  const ChildContext &child = *static_cast<const ChildContext *>(context);
  const off_t offset = lseek(child.documentFd, 0, SEEK_CUR);
  const RecordHead head{'R', static_cast<std::uint64_t>(offset < 0 ? 0 : offset), length};
  if (!writeAll(child.pipe, &head, sizeof head) || !writeAll(child.pipe, request, length)) _exit(3);
  std::snprintf(replyBuffer, static_cast<std::size_t>(replyBufferSize), "%s", kSuccessReply);
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
  ChildContext context{pipe, fd};
  if (!allocateReplyBuffer()) _exit(4);
  inputFd = fd;
  showActions = 0;
  debug = 0;
  arborUsers = settings.arborUsers ? 1 : 0;
  adUsers = settings.adUsers ? 1 : 0;
  reflectOnGemel = options.noGemel ? 0 : 1;
  setRequestStandIn(standIn, &context);
  const int status =
      restoreDocument(options.volume.c_str(), options.mountPoint.c_str(),
                      settings.hasFilter ? &settings.filter : nullptr, options.mask.c_str(),
                      options.treeGiven ? options.tree.c_str() : nullptr, 0);
  const RecordHead end{'S', 0, static_cast<std::uint64_t>(static_cast<std::int64_t>(status))};
  writeAll(pipe, &end, sizeof end);
  std::fflush(stdout);
  _exit(0);
}

// Reads the child's records into `match` until its end record or the pipe's end.
void readRecords(int pipe, RestoreMatch &match, unsigned long long &offset,
                 RestoreOutcome &outcome) {
  std::string request;
  RecordHead head;
  while (readAll(pipe, &head, sizeof head)) {
    if (head.type == 'S') {
      outcome.ran = true;
      outcome.status = static_cast<int>(static_cast<std::int64_t>(head.length));
      return;
    }
    if (head.type != 'R' || head.length > (1u << 20)) return;
    request.resize(head.length);
    if (!readAll(pipe, request.data(), request.size())) return;
    offset = head.offset;
    match.request(request);
  }
}

}  // namespace

RestoreOutcome runRestore(int fd, const CheckOptions &options, const RestoreSettings &settings,
                          RestoreMatch &match, unsigned long long &offset) {
  RestoreOutcome outcome;
  int pipes[2];
  if (pipe2(pipes, O_CLOEXEC) != 0) {
    outcome.failure = std::strerror(errno);
    return outcome;
  }
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
  readRecords(pipes[0], match, offset, outcome);
  close(pipes[0]);
  int waitStatus = 0;
  while (waitpid(child, &waitStatus, 0) < 0 && errno == EINTR) {
  }
  if (WIFSIGNALED(waitStatus)) outcome.signal = WTERMSIG(waitStatus);
  return outcome;
}
