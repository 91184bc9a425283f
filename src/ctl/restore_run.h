// trovan's own restore, run over a document without a file system: in a child process (so
// that whatever the run does to its process stays there, an abort included), with every
// request it would send handed to a RequestSink in this process instead of a command file.
#pragma once
#include <string>
#include <string_view>

#include "ctl/check_settings.h"
#include "model/sent_request.h"

struct RestoreOutcome {
  bool ran = false;     // the child ran to its end and reported a status
  int status = 0;       // the restore's completion code
  int signal = 0;       // the signal that ended the child, if one did
  std::string failure;  // why the run could not be made, if it could not
};

// How far trovan's restore had come in the document when it sent a request: the bytes its
// reader had gone past (the request was made of those), and the bytes it had read, its
// read-ahead included (unknown: all of them).
struct RestorePlace {
  unsigned long long parsed = ~0ULL;
  unsigned long long read = ~0ULL;
};

// Where the requests of a run go, in the order trovan would send them.
class RequestSink {
public:
  virtual ~RequestSink() = default;
  // One request as its bytes, sent at `place`.
  virtual void request(std::string_view bytes, RestorePlace place) = 0;
  // Whether the requests that are one of trovan's forms come to readRequest instead, read back
  // into their parts (as readSentRequest reads them) by the run: fewer bytes to pass on.
  virtual bool takesParts() const { return false; }
  virtual void readRequest(const SentRequestView &request, RestorePlace place) {}
};

// Runs the restore over the document open on `fd` (from its current offset; the descriptor's
// offset is the restore's) and feeds each request to `sink`.
RestoreOutcome runRestore(int fd, const CheckOptions &options, const RestoreSettings &settings,
                          RequestSink &sink);
