// The file system's two command files, opened once for a whole apply, and the stand-in that
// hands trovan's restore walkers' requests to them: each request's bytes, as trovan's one request
// builder made them, written at offset 0 of the command file its envelope belongs to, and the
// reply read back from offset 0 into trovan's reply buffer, where the walker judges it as its
// own channel would. The stand-in also remembers each reply's result for the account.
#pragma once
#include <csignal>
#include <cstddef>
#include <functional>
#include <string>

struct ReplyOutcome {
  bool sent = false;  // false: not sent (interrupted, or the command file failed)
  int error = 0;      // the errno of a command file that failed the exchange
  int result = 0;     // the reply's <result value="N">; -1 when the reply has none
  std::string description;
};

class CommandFiles {
public:
  CommandFiles() = default;
  ~CommandFiles();
  CommandFiles(const CommandFiles &) = delete;
  CommandFiles &operator=(const CommandFiles &) = delete;

  // Opens both command files. False after a message.
  bool open();
  // Sends `length` bytes of `request` and reads the reply into replyBuffer. Returns 0 or errno.
  int exchange(const char *request, std::size_t length, ReplyOutcome &outcome);

  // Installed as the admin channel's stand-in: every request goes through exchange(), then
  // `onReply` sees its outcome. With `stop` set, nothing more is sent: each request is answered
  // at once with EINTR and reported as not sent.
  void install(std::function<void(const ReplyOutcome &)> onReply,
               const volatile std::sig_atomic_t *stop);
  void uninstall();

private:
  static int standIn(const char *request, std::size_t length, void *context);

  int files_ = -1;
  int manage_ = -1;
  std::function<void(const ReplyOutcome &)> onReply_;
  const volatile std::sig_atomic_t *stop_ = nullptr;
};
