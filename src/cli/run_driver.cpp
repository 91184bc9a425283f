#include "cli/run_driver.h"

#include <fcntl.h>
#include <getopt.h>
#include <mntent.h>
#include <regex.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <strings.h>

#include "channel/admin_channel.h"
#include "channel/temp_files.h"
#include "cli/help_text.h"
#include "cli/options.h"
#include "cli/volume.h"
#include "document/completion_codes.h"
#include "document/run_settings.h"
#include "legacy/trustee_report.h"
#include "restore/restore_driver.h"
#include "save/save_driver.h"

// The checked string copy of the C library: it aborts the process when the text does not fit.
extern "C" char *__strcpy_chk(char *destination, const char *source, std::size_t destinationSize);

namespace {

constexpr std::size_t kMaskSize = 16;
constexpr const char *kInfoDirectoryBase = "/_admin/Manage_QUILL/Volume/";
constexpr const char *kRxlTrusteeFileSuffix = "/._KESTREL/.trustee_database.xml";
constexpr std::size_t kPathBufferSize = 4096;
constexpr std::size_t kMountEntryBufferSize = 4096;
constexpr char kTemporaryTemplate[] = "/tmp/tmp.XXXXXX";

struct RunOptions {
  const char *programName = nullptr;
  char mask[kMaskSize] = {};
  int rxl = 0;
  int userTypeGiven = 0;
  const char *userType = nullptr;
  int fromKestrel = 0;
  regex_t filter{};
  int filterCompiled = 0;
  char *tree = nullptr;
  char *prefix = nullptr;
  char *path = nullptr;
  char *volume = nullptr;
  char *infoDir = nullptr;
  char *rxlTrusteeFile = nullptr;
  char temporaryName[sizeof kTemporaryTemplate] = {};  // the -w document, once made
};

// Frees every copy the run made; safe on every path.
void releaseRun(RunOptions &run) {
  freeReplyBuffer();
  std::free(run.tree);
  std::free(run.volume);
  std::free(run.infoDir);
  std::free(run.rxlTrusteeFile);
  std::free(run.prefix);
  std::free(run.path);
  if (run.filterCompiled) regfree(&run.filter);
  run = RunOptions{};
}

const char *baseName(const char *argv0) {
  const char *slash = std::strrchr(argv0, '/');
  return slash != nullptr ? slash + 1 : argv0;
}

// A zero-filled copy of `text`, or null.
char *copyText(const char *text) {
  const std::size_t length = std::strlen(text);
  char *copy = static_cast<char *>(std::calloc(length + 1, 1));
  if (copy != nullptr) std::memcpy(copy, text, length + 1);
  return copy;
}

// Copies the -m text; a text of kMaskSize characters or more aborts the process through the C
// library's checked copy. The copy is made in a local buffer and moved in whole, a write that the
// static analyser can bound (a copy of unknown length straight into `run` loses its pointers).
void copyMask(char (&mask)[kMaskSize], const char *text) {
  char copy[kMaskSize] = {};
  __strcpy_chk(copy, text, sizeof copy);
  std::memcpy(mask, copy, sizeof copy);
}

constexpr int kKeepParsing = -1000;
constexpr int kDoneSuccessfully = -1001;

// "Unable to allocate memory.": a copy or buffer the run needs could not be made.
int outOfMemory() {
  std::fprintf(stderr, "Unable to allocate memory.\n");
  return kOutOfMemory;
}

// Replaces an owned option copy (-r, -t) with a copy of `argument`.
int keepCopy(char *&slot, const char *argument) {
  std::free(slot);
  slot = copyText(argument);
  return slot != nullptr ? kKeepParsing : outOfMemory();
}

constexpr struct option kLongOptions[] = {
    {"actions", no_argument, nullptr, 'a'},
    {"usertype", required_argument, nullptr, 'u'},
    {"debug", no_argument, nullptr, 'd'},
    {"filter", required_argument, nullptr, 'f'},
    {"help", no_argument, nullptr, 'h'},
    {"mask", required_argument, nullptr, 'm'},
    {"rxl", no_argument, nullptr, 'n'},
    {"tree", required_argument, nullptr, 't'},
    {"version", no_argument, nullptr, 'v'},
    {"inputfilefromkestrel", no_argument, nullptr, 'w'},
    {"relativepathprefix", required_argument, nullptr, 'r'},
    {"path", required_argument, nullptr, 'p'},
    {"no-gemel", no_argument, nullptr, 'k'},
    {nullptr, 0, nullptr, 0},
};

// Applies one option. Returns kKeepParsing, kDoneSuccessfully (help, version) or an exit status.
int applyOption(int option, RunOptions &run) {
  switch (option) {
  case 'a': showActions = 1; return kKeepParsing;
  case 'd': debug = 1; return kKeepParsing;
  case 'k': reflectOnGemel = 0; return kKeepParsing;
  case 'n': run.rxl = 1; return kKeepParsing;
  case 'w': run.fromKestrel = 1; return kKeepParsing;
  case 'h': printUsage(run.programName); return kDoneSuccessfully;
  case 'v': printVersion(); return kDoneSuccessfully;
  case 'm': copyMask(run.mask, optarg); return kKeepParsing;
  case 'p':
    std::free(run.path);
    run.path = normalisePathOption(optarg);
    return run.path != nullptr ? kKeepParsing : outOfMemory();
  case 'u':
    if (run.userTypeGiven) {
      std::fprintf(stderr, "Multiple user type option is not allowed.\n");
      return kUsageError;
    }
    run.userTypeGiven = 1;
    run.userType = optarg;
    // Only checked when -n came first; "-u ad -n" passes here.
    if (run.rxl && std::strcmp(optarg, "ad") == 0) {
      std::fprintf(stderr, "Option '-u ad' cannot be used with the option '-n' \n");
      return kUsageError;
    }
    return kKeepParsing;
  case 'f':
    if (run.filterCompiled) regfree(&run.filter);
    run.filterCompiled = 0;
    if (regcomp(&run.filter, optarg, REG_NOSUB) != 0) {
      std::fprintf(stderr, "Error parsing the regular expression.\n");
      return kOutOfMemory;
    }
    run.filterCompiled = 1;
    return kKeepParsing;
  case 'r': return keepCopy(run.prefix, optarg);
  case 't': return keepCopy(run.tree, optarg);
  case ':':
  case '?':
    std::fprintf(stderr, "Try '%s --help' for more information.\n", run.programName);
    return kUsageError;
  default:
    std::fprintf(stderr, "Invalid option \"%c\".\nTry '%s --help' for more information.\n", option,
                 run.programName);
    return kUsageError;
  }
}

// Every mount-table entry of the volume must hold the -p path, when one is given.
int checkPathOnVolume(const RunOptions &run) {
  if (run.path == nullptr) return 0;
  FILE *table = setmntent(kMountTable, "r");
  if (table == nullptr) return 0;
  int status = 0;
  struct mntent entry;
  char buffer[kMountEntryBufferSize];
  while (getmntent_r(table, &entry, buffer, sizeof buffer) != nullptr) {
    if (std::strcmp(entry.mnt_fsname, run.volume) != 0) continue;
    char fullPath[2 * kPathBufferSize + 2];
    std::snprintf(fullPath, sizeof fullPath, "%s/%s", entry.mnt_dir, run.path);
    struct stat info;
    if (stat(fullPath, &info) != 0) {
      std::fprintf(stderr, "Invalid path specified: [%s]\n", fullPath);
      status = kUsageError;
      break;
    }
  }
  endmntent(table);
  return status;
}

int runSave(RunOptions &run) {
  const std::size_t infoDirSize = std::strlen(kInfoDirectoryBase) + std::strlen(run.volume) + 2;
  run.infoDir = static_cast<char *>(std::malloc(infoDirSize));
  if (run.infoDir == nullptr) return outOfMemory();
  std::snprintf(run.infoDir, infoDirSize, "%s%s/", kInfoDirectoryBase, run.volume);
  struct stat info;
  if (stat(run.infoDir, &info) != 0) {
    std::fprintf(stderr, "Unable to find the info file for this volume.\n"
                         "The volume may not be found or QUILL may not be running\n");
    return kUsageError;
  }
  if (run.rxl) {
    run.rxlTrusteeFile = static_cast<char *>(std::calloc(kMountPointSize, 1));
    if (run.rxlTrusteeFile == nullptr) return outOfMemory();
    findVolumeMountPoint(run.volume, run.rxlTrusteeFile);
    if (std::strlen(run.rxlTrusteeFile) + 32 > kPathBufferSize) {
      std::fprintf(stderr, "RXL pathname is too long\n");
      return kUsageError;
    }
    std::strcat(run.rxlTrusteeFile, kRxlTrusteeFileSuffix);
    if (stat(run.rxlTrusteeFile, &info) != 0) {
      std::fprintf(stderr, "Unable to find the RXL trustee file for this volume.\n");
      return kUsageError;
    }
  }
  if (const int status = checkPathOnVolume(run); status != 0) return status;
  const int userTypeResult = parseUserType(run.userTypeGiven, run.userType, true);
  if (userTypeResult < 0) return userTypeResult;
  return saveMetadata(run.volume, run.infoDir, run.mask, run.rxlTrusteeFile, run.path);
}

// Converts the legacy report on standard input into a temporary Metadata document and makes it
// the restore's input. On failure the temporary file is left in /tmp.
int prepareLegacyInput(RunOptions &run) {
  if (run.tree == nullptr) {
    std::fprintf(stderr, "Provide Arbor tree name.\n");
    return kUsageError;
  }
  char *temporaryName = run.temporaryName;
  std::memcpy(temporaryName, kTemporaryTemplate, sizeof kTemporaryTemplate);
  const int temporaryFd = mkostemp(temporaryName, O_CLOEXEC);
  if (temporaryFd < 0) {
    std::fprintf(stderr, "Unable to create a temporary file from /tmp/tmp.XXXXXX.  err=%m\n");
    return kUsageError;
  }
  rememberTempFile(TempFile::kLegacyDocument, temporaryName);
  close(temporaryFd);
  if (convertTrusteeReport(run.tree, temporaryName, run.prefix) != 0) {
    std::fprintf(stderr, "Unable to read input file.\n");
    return kUsageError;
  }
  inputFd = open(temporaryName, O_RDONLY | O_CLOEXEC);
  if (inputFd < 0) {
    inputFd = 0;
    std::fprintf(stderr, "Unable to open temporary input file : %s\n", temporaryName);
    return kUsageError;
  }
  // The converted names already carry the tree: the restore runs without -t and -r.
  std::free(run.tree);
  run.tree = nullptr;
  std::free(run.prefix);
  run.prefix = nullptr;
  return 0;
}

int runRestore(RunOptions &run) {
  if (run.fromKestrel) {
    if (int status = prepareLegacyInput(run); status != 0) return status;
  }
  const int userTypeResult = parseUserType(run.userTypeGiven, run.userType, false);
  if (userTypeResult < 0) return userTypeResult;
  const int status = restoreMetadata(run.volume, run.filterCompiled ? &run.filter : nullptr,
                                     run.mask, run.tree, run.rxl);
  if (inputFd != 0) {
    close(inputFd);
    inputFd = 0;
    unlink(run.temporaryName);
    forgetTempFile(TempFile::kLegacyDocument);
  }
  return status;
}

// Parses the options, checks the arguments and runs the action. Returns the completion code.
int parseAndRun(int argc, char **argv, RunOptions &run) {
  run.programName = baseName(argv[0]);
  int option;
  while ((option = getopt_long(argc, argv, "vht:m:daf:knwr:p:u:", kLongOptions, nullptr)) != -1) {
    const int outcome = applyOption(option, run);
    if (outcome == kDoneSuccessfully) return 0;
    if (outcome != kKeepParsing) return outcome;
  }
  if (argc - optind != 2) {
    printUsage(run.programName);
    return 0;
  }
  inputFd = 0;
  const char *action = argv[optind];
  const bool save = strcasecmp(action, "save") == 0;
  if (!save && strcasecmp(action, "restore") != 0) {
    std::fprintf(stderr, "Missing action.\nUse %s --help for more information\n", run.programName);
    return kUsageError;
  }
  run.volume = copyText(argv[optind + 1]);
  if (run.volume == nullptr) return outOfMemory();
  if (!allocateReplyBuffer()) {
    std::fprintf(stderr, "Unable to allocate memory\n");
    return kOutOfMemory;
  }
  return save ? runSave(run) : runRestore(run);
}

}  // namespace

int runTrovan(int argc, char **argv) {
  RunOptions run;
  const int status = parseAndRun(argc, argv, run);
  releaseRun(run);
  return status & 0xff;
}
