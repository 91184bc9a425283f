// The simulated file system behind the command files: parses a request, applies it to the
// volumes' state and answers with a reply in the file system's own form.
#pragma once

#include "faults.h"
#include "lock.h"
#include "state.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace qs {

enum class CmdFile { files, manage };

class Server {
public:
  explicit Server(std::string root);

  /// Answers one request written to a command file; applies it unless faults say otherwise.
  /// The sandbox is locked while the request is applied: the volumes' state is first brought
  /// up to date with what other clients changed, and the change is appended to the volume's
  /// journal before the lock is let go. Then the reply waits for the sandbox's latency.
  std::string handle(CmdFile file, std::string_view request);
  /// Writes any change not yet in a journal (there is none between requests).
  void flush();
  /// Makes sure an info file of the volume is current before it is opened.
  void prepareInfoFile(std::string_view volume, std::string_view file);
  /// How many times a volume's state has been read whole from its files.
  unsigned long stateLoads() const { return stateLoads_; }

  /// The errno a read or write of the command file must fail with for this request, or 0.
  int readFault(std::string_view request);
  int writeFault(std::string_view data);

  bool fast() const { return fast_; }

  /// The named volume, current with every client's changes; the caller holds the lock.
  Volume *volume(std::string_view name);

private:
  // What a file was when last read: a rewrite (rename) or a change shows as a difference.
  struct Stamp {
    ino_t ino = 0;
    struct timespec mtime {};
    off_t size = -1;
    bool operator==(const Stamp &o) const {
      return ino == o.ino && mtime.tv_sec == o.mtime.tv_sec && mtime.tv_nsec == o.mtime.tv_nsec &&
             size == o.size;
    }
  };
  struct Loaded {
    std::unique_ptr<Volume> vol;
    Stamp state;           // the state file as read
    ino_t journalIno = 0;  // the journal as read, up to journalRead bytes
    off_t journalRead = 0;
  };
  std::string root_;
  StateLock lock_;
  bool fast_ = false;
  long long latency_ = 0;
  unsigned long stateLoads_ = 0;
  std::map<std::string, Loaded, std::less<>> volumes_;
  std::vector<VolumeInfo> list_;
  Users users_;
  std::vector<Fault> faults_;
  struct timespec listStamp_ {
  }, usersStamp_{}, faultsStamp_{}, latencyStamp_{};

  void refresh();
  std::string handleLocked(CmdFile file, std::string_view request, std::string_view kind);
  /// Reads what other clients appended to a volume's journal since this process last looked.
  void catchUp(const std::string &name, Loaded &l);
  /// Appends the volumes' pending changes to their journals; a journal grown larger than its
  /// state file is folded into it (a cost that many appends share).
  void commit();
  void compact(const std::string &name, Loaded &l);
  Volume *volumeOfPath(std::string_view full, std::string &rel);
  std::string apply(CmdFile file, std::string_view request, std::string_view marker);
  bool exists(const Volume &v, const std::string &full, std::string_view rel, bool wantDir);
  Volume *shadowOf(const Volume &v);

  std::string addTrustee(std::string_view req, bool ad);
  std::string modifyIrf(std::string_view req);
  /// The rights list and the file a trustee or filter request names: on success `error` is
  /// empty and the rights, the file's volume and its path in the volume are set; otherwise
  /// `error` is the reply to give.
  struct RightsTarget {
    Rights rights = 0;
    Volume *volume = nullptr;
    std::string relative;
    std::string error;
  };
  RightsTarget rightsTarget(std::string_view kind, std::string_view rights,
                            std::string_view fileName);
  std::string removeTrustee(std::string_view req, bool ad);
  std::string userQuota(std::string_view req, bool ad);
  std::string dirQuota(std::string_view req);
};

/// The marker element a reply to this request carries ("addTrustee", ...); empty if unknown.
std::string_view requestKind(std::string_view request);

/// A reply in the file system's form; name is written only when non-empty.
std::string makeReply(std::string_view kind, long value, std::string_view description,
                      std::string_view name);

}  // namespace qs
