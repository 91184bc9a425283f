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
#include <regex.h>
#include <stdlib.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "channel/admin_channel.h"
#include "document/plain_entries.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "file_text.h"
#include "legacy/report_line.h"
#include "output_capture.h"
#include "save/identity_library.h"
#include "save/rxl_import.h"
#include "temp_directory.h"

namespace testing_support {

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
// adminFd, the request and reply buffers, the request stand-in), the tag reader (its reading
// state, its window-only setting and its fast steps, turned on), the legacy report's read-ahead,
// the RXL trustee file's scanner and the identity library. Then gives the run a reply buffer and
// both user types, as a restore without -u has.
inline void resetProcessState() {
  resetRunSettings();
  resetAdminChannel();
  resetTagReader();
  usePlainSteps(true);
  resetReportInput();
  resetRxlImportScanner();
  resetIdentityLibrary();
  allocateReplyBuffer();
  arborUsers = adUsers = 1;
}

// A test of the restore walkers: the process state reset before each case, a document on
// inputFd, an optional path filter, and what a walk printed and sent.
class RestoreWalkTest : public testing::Test {
protected:
  void SetUp() override { resetProcessState(); }
  void TearDown() override {
    closeInput();
    if (filterCompiled) regfree(&filter);
    freeReplyBuffer();
  }

  // Runs `walk` over `document` on inputFd with every request answered by `reply`, keeping what
  // it printed and the requests it sent.
  template <typename Walk>
  int walkDocument(const std::string &document, Walk walk, const std::string &reply) {
    FakeAdminFile admin(dir, reply);
    const int result = walkDocument(document, walk);
    requests = admin.requests();
    return result;
  }
  // The same with no command file. inputFd stays open, where the walk left it, until the next
  // walk or the end of the case.
  template <typename Walk> int walkDocument(const std::string &document, Walk walk) {
    closeInput();
    inputFd = openWithContents(dir, "doc.xml", document);
    resetTagReader();
    Output output;
    const int result = walk();
    output.finish();
    out = output.out;
    err = output.err;
    return result;
  }

  void useFilter(const char *expression) {
    ASSERT_EQ(regcomp(&filter, expression, REG_NOSUB), 0);
    filterCompiled = true;
  }
  const regex_t *usedFilter() const { return filterCompiled ? &filter : nullptr; }

  TempDir dir;
  regex_t filter{};
  bool filterCompiled = false;
  std::string out, err;
  std::vector<std::string> requests;

private:
  static void closeInput() {
    if (inputFd > 0) close(inputFd);
    inputFd = 0;
  }
};

}  // namespace testing_support
