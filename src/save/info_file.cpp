#include "save/info_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "document/completion_codes.h"
#include "document/run_settings.h"
#include "save/info_filters.h"
#include "save/info_wrapper.h"

namespace {

constexpr std::size_t kReadStep = 65536;
constexpr std::size_t kReadChunk = 1 << 20;
// The text's length is carried as a signed 32-bit count.
constexpr std::size_t kLargestText = INT_MAX - kReadStep - 2;

// "<where>: Failed to allocate memory."; returns kOutOfMemory.
int reportNoMemory(const char *where) {
  std::fprintf(stderr, "%s: Failed to allocate memory.\n", where);
  return kOutOfMemory;
}

// The text of an info file, in memory mapped straight from the system so that it can grow
// without a copy and be backed by large pages (an info file can hold hundreds of megabytes).
// Every page of a fresh buffer is faulted in and cleared by the kernel; in 2 MB pages rather than
// 4 KB ones, that halves the processor time of a plain save.
class TextBuffer {
public:
  TextBuffer() = default;
  TextBuffer(const TextBuffer &) = delete;
  TextBuffer &operator=(const TextBuffer &) = delete;
  ~TextBuffer() {
    if (data_ != nullptr) munmap(data_, capacity_);
  }
  char *data() const { return data_; }
  std::size_t capacity() const { return capacity_; }

  // Makes room for `capacity` bytes, keeping the bytes held so far. False when memory runs out.
  bool reserve(std::size_t capacity) {
    capacity = (capacity + kPage - 1) / kPage * kPage;
    void *area = data_ == nullptr ? mmap(nullptr, capacity, PROT_READ | PROT_WRITE,
                                         MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)
                                  : mremap(data_, capacity_, capacity, MREMAP_MAYMOVE);
    if (area == MAP_FAILED) return false;
    data_ = static_cast<char *>(area);
    capacity_ = capacity;
    madvise(data_, capacity_, MADV_HUGEPAGE);
    return true;
  }

private:
  static constexpr std::size_t kPage = 2 << 20;
  char *data_ = nullptr;
  std::size_t capacity_ = 0;
};

struct Buffers {
  char *name = nullptr;
  char *scratch = nullptr;
  TextBuffer text;
  int fd = -1;
  ~Buffers() {
    std::free(name);
    std::free(scratch);
    if (fd >= 0) close(fd);
  }
};

// Reads the open file until a read returns 0. Its stat size is only a first guess at the room
// needed (the file system reports 0 for its virtual files); the buffer grows geometrically. The
// text ends at its first NUL, so *size is that position (or all that was read).
// Returns 0 with the text terminated where the data ends, kOutOfMemory, or the errno of a
// failed read.
int readWhole(int fd, TextBuffer &text, std::size_t *size) {
  std::size_t capacity = kReadStep + 1;
  struct stat info;
  if (fstat(fd, &info) == 0 && info.st_size > 0 &&
      static_cast<unsigned long long>(info.st_size) < kLargestText)
    capacity = static_cast<std::size_t>(info.st_size) + kReadStep + 1;
  if (!text.reserve(capacity)) return reportNoMemory("util/trovan/trovan[3043]");
  std::size_t used = 0;
  for (;;) {
    if (used == text.capacity() - 1) {
      std::size_t grown = 2 * text.capacity();
      if (grown > kLargestText + 1) grown = kLargestText + 1;
      if (grown <= text.capacity() || !text.reserve(grown))
        return reportNoMemory("util/trovan/trovan[3056]");
    }
    std::size_t room = text.capacity() - 1 - used;
    if (room > kReadChunk) room = kReadChunk;
    const ssize_t count = read(fd, text.data() + used, room);
    if (count == 0) break;
    if (count < 0) {
      if (errno == EINTR) continue;
      const int error = errno;
      std::fprintf(stderr, "fread failed. Error=%m\n");
      return error;
    }
    used += static_cast<std::size_t>(count);
  }
  text.data()[used] = '\0';
  const void *nul = std::memchr(text.data(), '\0', used);
  *size = nul == nullptr ? used
                         : static_cast<std::size_t>(static_cast<const char *>(nul) - text.data());
  return 0;
}

// The elements the user-type filter of -u removes from a file, if any.
struct UserTypeRemoval {
  const char *startName = nullptr;
  const char *endName = nullptr;
  // Printed after a failed removal, besides the removal's own message.
  const char *failure = nullptr;
};

UserTypeRemoval userTypeRemoval(const char *fileName) {
  const bool trustees = std::strcmp(fileName, "TrusteeInfo.xml") == 0;
  const bool users = std::strcmp(fileName, "UserInfo.xml") == 0;
  if (arborUsers) {
    if (trustees) return {"trustee type=\"adID\"", "trustee"};
    if (users) return {"user type=\"adID\"", "user"};
  } else if (adUsers) {
    if (trustees) return {"trustee", "trustee"};
    if (users)
      return {"user", "user",
              "Failed to remove given object from infile -> admin_user_quota_file.\n"};
  }
  return {};
}

// 0, or kOwnFailure after a failed removal (with the removal's extra message).
int removalStatus(const UserTypeRemoval &removal, int status) {
  if (status == 0) return 0;
  if (removal.failure != nullptr) std::fputs(removal.failure, stderr);
  return kOwnFailure;
}

}  // namespace

int extractInfoFile(const char *infoDir, const char *fileName, const char *path,
                    const char *elementName) {
  Buffers buffers;
  const std::size_t dirLength = std::strlen(infoDir);
  const std::size_t fileLength = std::strlen(fileName);
  buffers.name = static_cast<char *>(std::calloc(dirLength + fileLength + 1, 1));
  if (buffers.name == nullptr) return reportNoMemory("util/trovan/trovan[3028]");
  std::memcpy(buffers.name, infoDir, dirLength);
  std::memcpy(buffers.name + dirLength, fileName, fileLength);

  buffers.fd = open(buffers.name, O_RDONLY | O_CLOEXEC);
  if (buffers.fd < 0) {
    std::fprintf(stderr, "Unable to open %s.  err=%m\n", buffers.name);
    return kOwnFailure;
  }
  std::size_t size = 0;
  if (int status = readWhole(buffers.fd, buffers.text, &size); status != 0) return status;

  // The text ends at its first NUL; from here on its length is carried, never measured again.
  int length = static_cast<int>(size);
  if (length == 0) return 0;
  char *text = stripInfoWrapper(buffers.text.data(), &length);
  size = static_cast<std::size_t>(length);
  const UserTypeRemoval removal = userTypeRemoval(fileName);
  if (removal.startName != nullptr) {
    const int status = removeElementsWhole(text, &length, removal.startName, removal.endName);
    if (removalStatus(removal, status) != 0) return kOwnFailure;
    size = static_cast<std::size_t>(length);
  }
  if (path != nullptr) {
    // Only the unfiltered rest after an element without an end tag is ever copied into the
    // scratch space, so most of it is never touched.
    buffers.scratch = static_cast<char *>(std::malloc(static_cast<std::size_t>(length) + 2));
    if (buffers.scratch == nullptr) {
      std::fprintf(stderr, "%s: Failed to realloc memory.\n", "util/trovan/trovan[3128]");
      return kOutOfMemory;
    }
    size = filterByPathWhole(text, &length, path, buffers.scratch, elementName);
  }

  if (write(1, text, size) < 0) {
    const int error = errno;
    std::fprintf(stderr, "Error %m saving information to standard out\n");
    return error;
  }
  return 0;
}
