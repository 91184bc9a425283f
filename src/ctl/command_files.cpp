#include "ctl/command_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "channel/admin_channel.h"
#include "ctl/output.h"

namespace {

int openCommandFile(const char *name) {
  const int fd = ::open(name, O_RDWR | O_CLOEXEC);
  if (fd < 0) reportError(std::string("apply: ") + name + ": " + std::strerror(errno));
  return fd;
}

// The element a reply to `request` must hold, as trovan's walkers look for it.
std::string_view replyMarker(std::string_view request) {
  if (request.find("<modifyInheritedRightsFilter>") != std::string_view::npos)
    return "<modifyInheritedRightsFilter>";
  if (request.find("<userSpaceRestrictions>") != std::string_view::npos)
    return "<userSpaceRestrictions>";
  if (request.find("<addQuota>") != std::string_view::npos) return "<addQuota>";
  if (request.find("<removeTrustee") != std::string_view::npos) return "removeTrustee";
  return "<addTrustee>";
}

// The result value and description of a reply text, as the account shows them; -1 when the
// reply is not one trovan's walkers recognise.
void readOutcome(std::string_view request, std::string_view reply, ReplyOutcome &outcome) {
  outcome.result = -1;
  const std::size_t marker = reply.find(replyMarker(request));
  if (marker == std::string_view::npos) return;
  const std::size_t result = reply.find("<result value=\"", marker);
  if (result == std::string_view::npos) return;
  outcome.result = std::atoi(reply.data() + result + 15);
  const std::size_t open = reply.find("<description>", result);
  if (open == std::string_view::npos) return;
  const std::size_t close = reply.find("</description>", open);
  if (close == std::string_view::npos) return;
  outcome.description = reply.substr(open + 13, close - open - 13);
}

}  // namespace

CommandFiles::~CommandFiles() {
  uninstall();
  if (files_ >= 0) close(files_);
  if (manage_ >= 0) close(manage_);
}

bool CommandFiles::open() {
  files_ = openCommandFile(kFilesCommandFile);
  if (files_ < 0) return false;
  manage_ = openCommandFile(kManageCommandFile);
  return manage_ >= 0;
}

int CommandFiles::exchange(const char *request, std::size_t length, ReplyOutcome &outcome) {
  outcome = ReplyOutcome();
  // A volume request goes to manage.cmd, a file request to files.cmd, as trovan's walkers do.
  const bool volumeRequest = std::string_view(request, length).starts_with(kVolumeRequestOpen);
  const int fd = volumeRequest ? manage_ : files_;
  if (lseek(fd, 0, SEEK_SET) < 0) return errno;
  if (write(fd, request, length) < 0) return errno;
  if (lseek(fd, 0, SEEK_SET) < 0) return errno;
  outcome.sent = true;
  std::size_t used = 0;
  for (;;) {
    const std::size_t room = static_cast<std::size_t>(replyBufferSize) - 1 - used;
    if (room == 0) break;  // the rest of a reply this long is not needed
    const ssize_t count = read(fd, replyBuffer + used, room);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    if (count == 0) break;
    used += static_cast<std::size_t>(count);
  }
  replyBuffer[used] = '\0';
  readOutcome(std::string_view(request, length), std::string_view(replyBuffer, used), outcome);
  return 0;
}

void CommandFiles::install(std::function<void(const ReplyOutcome &)> onReply,
                           const volatile std::sig_atomic_t *stop) {
  onReply_ = std::move(onReply);
  stop_ = stop;
  setRequestStandIn(&CommandFiles::standIn, this);
}

void CommandFiles::uninstall() {
  if (onReply_) setRequestStandIn(nullptr, nullptr);
  onReply_ = nullptr;
}

int CommandFiles::standIn(const char *request, std::size_t length, void *context) {
  auto &self = *static_cast<CommandFiles *>(context);
  ReplyOutcome outcome;
  int error = EINTR;
  if (self.stop_ == nullptr || *self.stop_ == 0) {
    error = self.exchange(request, length, outcome);
    if (error == EINTR) error = EIO;  // EINTR stands for "not sent: stopped"
  }
  if (error != 0 && error != EINTR) outcome.error = error;
  if (error != 0) outcome.sent = false;
  self.onReply_(outcome);
  return error;
}
