#include "ctl/command_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "channel/admin_channel.h"
#include "ctl/output.h"
#include "document/completion_codes.h"

namespace {

int openCommandFile(const char *name) {
  const int fd = ::open(name, O_RDWR | O_CLOEXEC);
  if (fd < 0) reportError(std::string("apply: ") + name + ": " + std::strerror(errno));
  return fd;
}

}  // namespace

CommandFiles::~CommandFiles() {
  if (files_ >= 0) close(files_);
  if (manage_ >= 0) close(manage_);
}

bool CommandFiles::open() {
  files_ = openCommandFile(kFilesCommandFile);
  if (files_ < 0) return false;
  manage_ = openCommandFile(kManageCommandFile);
  return manage_ >= 0;
}

void CommandFiles::exchange(std::size_t length, std::string_view replyElement, bool volumeRequest,
                            ReplyOutcome &outcome) {
  outcome = ReplyOutcome();
  adminFd = volumeRequest ? manage_ : files_;
  Reply reply;
  const int code = exchangeRequest(replyElement, reply, length);
  adminFd = 0;
  if (code > 0) {
    outcome.error = code;
    return;
  }
  outcome.sent = true;
  outcome.result = code == kSuccess ? reply.result : -1;
  if (code == kSuccess && reply.result != 0) outcome.description = reply.description;
}
