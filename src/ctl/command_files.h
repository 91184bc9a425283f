// The file system's two command files, opened once for a whole apply. Each request goes through
// trovan's own admin channel (the send and the reply reading of trovan restore), to the command
// file its kind belongs to: a user quota to the volume one, everything else to the file one.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>

struct ReplyOutcome {
  bool sent = false;        // false: not sent (interrupted, or the command file failed)
  int error = 0;            // the errno of a command file that failed the exchange
  int result = 0;           // the reply's <result value="N">; -1 when the reply has none
  std::string description;  // a refusal's description
};

class CommandFiles {
public:
  CommandFiles() = default;
  ~CommandFiles();
  CommandFiles(const CommandFiles &) = delete;
  CommandFiles &operator=(const CommandFiles &) = delete;

  // Opens both command files. False after a message.
  bool open();
  // Sends the `length` bytes of requestBuffer and reads the reply, which must hold
  // `replyElement`. The channel's own messages go to standard error.
  void exchange(std::size_t length, std::string_view replyElement, bool volumeRequest,
                ReplyOutcome &outcome);

private:
  int files_ = -1;
  int manage_ = -1;
};
