// Interposes open/open64 and dup2 inside the test binary only; trovan itself has no such hook.
#undef _FORTIFY_SOURCE
#include "admin_file_redirect.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <string>

namespace {

std::string redirectTarget;
bool redirectSet = false;
std::string manageTarget;
bool manageSet = false;
bool failStdinRedirect = false;

using OpenFunction = int (*)(const char *, int, ...);
using Dup2Function = int (*)(int, int);

template <typename Function> Function realFunction(const char *name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

int openRedirected(OpenFunction real, const char *path, int flags, mode_t mode) {
  if (path != nullptr && std::strncmp(path, "/_admin", 7) == 0) {
    if (std::strcmp(path, "/_admin/Manage_QUILL/manage.cmd") == 0 && manageSet)
      return real(manageTarget.c_str(), flags | O_APPEND, mode);
    if (std::strcmp(path, "/_admin/Manage_QUILL/files.cmd") != 0 || !redirectSet) {
      errno = ENOENT;
      return -1;
    }
    return real(redirectTarget.c_str(), flags | O_APPEND, mode);
  }
  return real(path, flags, mode);
}

mode_t modeArgument(int flags, va_list arguments) {
  return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE ? va_arg(arguments, mode_t) : 0;
}

}  // namespace

void redirectFilesCommandFile(const char *path) {
  redirectSet = path != nullptr;
  redirectTarget = path != nullptr ? path : "";
}

void redirectManageCommandFile(const char *path) {
  manageSet = path != nullptr;
  manageTarget = path != nullptr ? path : "";
}

void failNextStdinRedirect() { failStdinRedirect = true; }

extern "C" int open(const char *path, int flags, ...) {
  static const OpenFunction real = realFunction<OpenFunction>("open");
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = modeArgument(flags, arguments);
  va_end(arguments);
  return openRedirected(real, path, flags, mode);
}

extern "C" int open64(const char *path, int flags, ...) {
  static const OpenFunction real = realFunction<OpenFunction>("open64");
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = modeArgument(flags, arguments);
  va_end(arguments);
  return openRedirected(real, path, flags, mode);
}

extern "C" int dup2(int from, int to) noexcept {
  static const Dup2Function real = realFunction<Dup2Function>("dup2");
  if (to == 0 && failStdinRedirect) {
    failStdinRedirect = false;
    errno = EBADF;
    return -1;
  }
  return real(from, to);
}
