// trovan's own restore, run over a document without a file system: in a child process (so
// that whatever the run does to its process stays there, an abort included), with every
// request it would send handed to a RestoreMatch in this process instead of a command file.
#pragma once
#include <string>

#include "ctl/check_settings.h"
#include "ctl/restore_match.h"

struct RestoreOutcome {
  bool ran = false;     // the child ran to its end and reported a status
  int status = 0;       // the restore's completion code
  int signal = 0;       // the signal that ended the child, if one did
  std::string failure;  // why the run could not be made, if it could not
};

// Runs the restore over the document open on `fd` (from its current offset; the descriptor's
// offset is the restore's) and feeds each request, with how far trovan had read, to `match`.
// `offset` is set, before each request reaches `match`, to how far trovan had read then.
RestoreOutcome runRestore(int fd, const CheckOptions &options, const RestoreSettings &settings,
                          RestoreMatch &match, unsigned long long &offset);
