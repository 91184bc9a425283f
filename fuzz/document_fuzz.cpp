// Metadata documents through the restore walkers, with every request answered by an in-memory
// command file. The first input byte chooses the run's settings; the rest is the document.
//
// The walkers are driven below the point where the restore opens the real command files: the
// document's top level is walked here as the restore driver walks it, and each section goes to
// its walker with adminFd already set. The stand-in command file holds 64 KiB of padding and a
// reply after it: a request (at most 64 KiB) overwrites the padding, and the reply read from
// offset 0 finds the request's marker and then the reply's result.
//
//   cmake -S . -B build-fuzz -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang \
//         -DTROVAN_FUZZ=ON -DTROVAN_TESTS=OFF && ninja -C build-fuzz document_fuzz
//   build-fuzz/fuzz/document_fuzz -max_total_time=60 fuzz/corpus/document
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "channel/admin_channel.h"
#include "document/records.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "restore/dir_quota_restore.h"
#include "restore/trustee_restore.h"
#include "restore/user_quota_restore.h"

namespace {

int commandFile = -1;

int makeCommandFile() {
  const int fd = memfd_create("files.cmd", 0);
  const std::string reply =
      std::string(65536, ' ') +
      "<addTrustee><modifyInheritedRightsFilter><userSpaceRestrictions><addQuota>"
      "<result value=\"0\"><description>success</description><name>n</name></result>";
  if (write(fd, reply.data(), reply.size()) != static_cast<ssize_t>(reply.size())) return -1;
  return fd;
}

// The restore driver's top level, over the walkers (no volume lookup, no command file opens).
int walkDocument(const char *tree) {
  char tag[kTagNameSize] = "";
  unsigned long isEndTag = 0;
  if (readTag(tag, &isEndTag, "restoreMetadata(1)") != 0 || std::strcmp(tag, "metadata") != 0)
    return -1;
  for (;;) {
    if (const int result = readTag(tag, &isEndTag, "restoreMetadata"); result != 0) return result;
    if (isEndTag != 0) {
      if (std::strcmp(tag, "metadata") == 0) return 0;
      continue;
    }
    int result = 0;
    // An empty mount point: every path the field holds also fits the full name.
    if (std::strcmp(tag, "trusteeInfo") == 0) result = walkTrusteeSection("", nullptr, tree, 0);
    if (std::strcmp(tag, "userInfo") == 0) result = walkUserQuotaSection("VOL", tree);
    if (std::strcmp(tag, "dirInfo") == 0) result = walkDirQuotaSection("", nullptr);
    if (result != 0) return result;
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  commandFile = makeCommandFile();
  allocateReplyBuffer();
  const int null = open("/dev/null", O_WRONLY);
  dup2(null, 1);  // the -a lines and the -d trace
  close(null);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  const std::uint8_t settings = data[0];
  resetRunSettings();
  resetAdminChannel();
  resetTagReader();
  if (replyBuffer == nullptr) allocateReplyBuffer();
  showActions = settings & 1;
  debug = (settings >> 1) & 1;
  reflectOnGemel = (settings >> 2) & 1;
  arborUsers = (settings >> 3) & 1 ? 1 : (settings >> 4) & 1 ? 0 : 1;
  adUsers = (settings >> 4) & 1 ? 1 : (settings >> 3) & 1 ? 0 : 1;
  const char *tree = (settings >> 5) & 1 ? "NEWTREE" : nullptr;

  const int input = memfd_create("document", 0);
  if (write(input, data + 1, size - 1) != static_cast<ssize_t>(size - 1)) return 0;
  lseek(input, 0, SEEK_SET);
  inputFd = input;
  adminFd = commandFile;
  walkDocument(tree);
  adminFd = 0;
  inputFd = 0;
  close(input);
  return 0;
}
