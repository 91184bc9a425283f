// Test helpers for the tag reader and the restore walkers: a document on inputFd from a temporary
// file, and a stand-in for an admin command file.
//
// The stand-in is a temporary regular file opened with O_APPEND and pre-filled with a reply: the
// channel positions it at 0 and writes, which appends the request; it then reads from 0 and
// finds the pre-filled reply first. After the run the file holds the reply followed by every
// request in the order sent.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "channel/admin_channel.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"

namespace testing_support {

inline std::string readWhole(int fd) {
  std::string out;
  char chunk[65536];
  lseek(fd, 0, SEEK_SET);
  for (ssize_t n; (n = read(fd, chunk, sizeof chunk)) > 0;)
    out.append(chunk, n);
  return out;
}

class TempDir {
public:
  TempDir() {
    char pattern[] = "/tmp/trovan-test-XXXXXX";
    path_ = mkdtemp(pattern);
  }
  ~TempDir() {
    const std::string command = "rm -rf '" + path_ + "'";
    if (std::system(command.c_str()) != 0) std::perror("rm");
  }
  const std::string &path() const { return path_; }
  std::string file(const std::string &name) const { return path_ + "/" + name; }

private:
  std::string path_;
};

// Writes text to a new file in dir and returns a read-only descriptor on it.
inline int openWithContents(const TempDir &dir, const std::string &name, const std::string &text) {
  const std::string path = dir.file(name);
  const int out = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  if (out < 0 || write(out, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
    ADD_FAILURE() << "cannot write " << path;
  close(out);
  return open(path.c_str(), O_RDONLY);
}

// A reply that every request kind of restore accepts, with the given result.
inline std::string replyWith(int result, const std::string &description = "ok",
                             const std::string &name = "") {
  std::string reply =
      "<quillReply><addTrustee><modifyInheritedRightsFilter><userSpaceRestrictions><addQuota>"
      "<result value=\"" +
      std::to_string(result) + "\"><description>" + description + "</description>";
  if (!name.empty()) reply += "<name>" + name + "</name>";
  return reply + "</result></addQuota></userSpaceRestrictions></modifyInheritedRightsFilter>"
                 "</addTrustee></quillReply>\n";
}

class FakeAdminFile {
public:
  FakeAdminFile(const TempDir &dir, const std::string &reply) : reply_(reply) {
    const std::string path = dir.file("files.cmd");
    const int out = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (write(out, reply.data(), reply.size()) != static_cast<ssize_t>(reply.size()))
      ADD_FAILURE() << "cannot write the fake command file";
    close(out);
    fd_ = open(path.c_str(), O_RDWR | O_APPEND);
    adminFd = fd_;
  }
  ~FakeAdminFile() {
    if (fd_ >= 0) close(fd_);
    adminFd = 0;
  }
  // Every request sent, in order.
  std::vector<std::string> requests() const {
    const std::string all = readWhole(fd_).substr(reply_.size());
    std::vector<std::string> out;
    const std::string start = "<virtualIO>";
    for (std::size_t at = all.find(start); at != std::string::npos;) {
      const std::size_t next = all.find(start, at + 1);
      out.push_back(all.substr(at, next == std::string::npos ? std::string::npos : next - at));
      at = next;
    }
    return out;
  }

private:
  std::string reply_;
  int fd_ = -1;
};

// Puts every process-wide setting back, each through its owner's reset: the run settings
// (showActions, debug, arborUsers, adUsers, inputFd), the admin channel (reflectOnGemel,
// adminFd, the request and reply buffers, the request stand-in) and the tag reader (its reading
// state and its window-only setting). Then gives the run a reply buffer and both user types, as
// a restore without -u has.
inline void resetProcessState() {
  resetRunSettings();
  resetAdminChannel();
  resetTagReader();
  allocateReplyBuffer();
  arborUsers = adUsers = 1;
}

// Captures what the code writes on descriptors 1 and 2 (stdio included).
class Output {
public:
  Output() {
    std::fflush(stdout);
    std::fflush(stderr);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
  }
  void finish() {
    std::fflush(stdout);
    std::fflush(stderr);
    out = testing::internal::GetCapturedStdout();
    err = testing::internal::GetCapturedStderr();
  }
  std::string out;
  std::string err;
};

}  // namespace testing_support
