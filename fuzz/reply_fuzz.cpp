// Arbitrary reply bytes through receiveReply, read back from an in-memory command file.
// Run with -close_fd_mask=2 to keep the channel's messages out of the fuzzer's report.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "channel/admin_channel.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static bool ready = allocateReplyBuffer();
  if (!ready || size < 1) return 0;
  const int fd = memfd_create("files.cmd", 0);
  if (fd < 0) return 0;
  // The first byte picks the element searched for; the rest is the reply.
  static const char *const kElements[] = {"<addTrustee>",
                                          "<modifyInheritedRightsFilter>",
                                          "<userSpaceRestrictions>",
                                          "<addQuota>",
                                          "removeTrustee",
                                          ""};
  const char *element = kElements[data[0] % 6];
  if (write(fd, data + 1, size - 1) != static_cast<ssize_t>(size - 1)) {
    close(fd);
    return 0;
  }
  adminFd = fd;
  int result = 0;
  char description[kDescriptionSize];
  char name[kReplyNameSize];
  const bool withName = (data[0] & 8) != 0;
  if (receiveReply(element, &result, sizeof description, description, withName ? sizeof name : 0,
                   withName ? name : nullptr) == 0) {
    if (std::strlen(description) >= sizeof description) std::abort();
    if (withName && std::strlen(name) >= sizeof name) std::abort();
  }
  if (replyBuffer == nullptr) std::abort();
  close(fd);
  adminFd = 0;
  return 0;
}
