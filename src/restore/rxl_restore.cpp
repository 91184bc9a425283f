// Applies a trustee or an inherited rights filter with the console command "rxlcon", and judges
// the command by the words "completed OK" in what it wrote on its error stream.
#include "restore/rxl_restore.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "channel/console_runner.h"
#include "document/completion_codes.h"
#include "document/rights.h"
#include "document/run_settings.h"
#include "document/xml_text.h"

namespace {

constexpr char kConsoleCommand[] = "rxlcon";
constexpr std::string_view kConfirmation = "completed OK";

char *arg(const char *text) { return const_cast<char *>(text); }

// The console's report for one change: 0 when it holds the confirmation, kOwnFailure otherwise
// (after the message). The temporary file is removed unless it could not be opened.
template <typename NoMemory, typename NotConfirmed>
int judgeReport(const char *tempName, NoMemory noMemory, NotConfirmed notConfirmed) {
  const int fd = open(tempName, O_RDONLY);
  if (fd < 0) {
    std::fprintf(stderr, "Error reading tmp file: %m\n");
    return kOwnFailure;
  }
  int result = kOwnFailure;
  char *text = nullptr;
  struct stat info;
  if (fstat(fd, &info) != 0) {
    std::fprintf(stderr, "Error stating tmp file: %m\n");
  } else if ((text = static_cast<char *>(
                  std::malloc(static_cast<std::size_t>(info.st_size) + 1))) == nullptr) {
    noMemory();
  } else {
    const ssize_t got = read(fd, text, static_cast<std::size_t>(info.st_size));
    if (got < 0) {
      std::fprintf(stderr, "Error reading tmp file: %m\n");
    } else {
      // The report is text: it ends at the bytes read, or at a NUL byte within them.
      text[got] = '\0';
      if (std::string_view(text).find(kConfirmation) == std::string_view::npos)
        notConfirmed();
      else
        result = 0;
    }
  }
  std::free(text);
  close(fd);
  unlink(tempName);
  return result;
}

}  // namespace

int addRxlInheritedRightsFilter(const char *path, const char *rightsElements) {
  char letters[kRightsLettersSize] = "";
  const int count = rightsToLetters(rightsElements, letters);

  errno = 0;
  char *const argv[] = {arg(kConsoleCommand),
                        arg("irm"),
                        arg("set"),
                        arg(path),
                        arg(count < 1 ? "none" : letters),
                        nullptr};
  char tempName[kConsoleTempNameSize];
  const int ran = runCommand(kConsoleCommand, argv, tempName);
  if (ran != 0) {
    std::fprintf(stderr, "Error adding inherited right filter \"%s\" to %s.\n", letters, path);
    return ran;
  }
  const int result = judgeReport(
      tempName,
      [] { std::fprintf(stderr, "Error allocing memory for return value during IRF add.\n"); },
      [&] { std::fprintf(stderr, "Error adding IRF %s with rights [%s].\n", path, letters); });
  if (result == 0 && showActions)
    std::printf("Inherited rights filter added to %s with rights [%s].\n", path, letters);
  return result;
}

int addRxlTrustee(const char *path, char *trusteeName, const char *rightsElements) {
  char letters[kRightsLettersSize] = "";
  const int count = rightsToLetters(rightsElements, letters);
  toTypelessName(trusteeName);

  errno = 0;
  char *const argv[] = {arg(kConsoleCommand),
                        arg("rights"),
                        arg("add"),
                        arg(path),
                        trusteeName,
                        arg(count < 1 ? "none" : letters),
                        nullptr};
  char tempName[kConsoleTempNameSize];
  const int ran = runCommand(kConsoleCommand, argv, tempName);
  if (ran != 0) {
    std::fprintf(stderr, "Error adding trustee %s to %s with rights [%s].\n", trusteeName, path,
                 letters);
    return ran;
  }
  const int result = judgeReport(
      tempName,
      [] { std::fprintf(stderr, "Error allocing memory for return value during trustee add.\n"); },
      [&] {
        std::fprintf(stderr, "Error adding trustee %s to %s with rights [%s].\n", trusteeName, path,
                     letters);
      });
  if (result == 0 && showActions)
    std::printf("Trustee %s added to %s with rights [%s].\n", trusteeName, path, letters);
  return result;
}
