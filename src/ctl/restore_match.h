// What trovan restore would send, set against what the document says. The requests come one by
// one from trovan's own restore run over the document; the entries come from the strict reader
// over the same bytes, pulled only as far as trovan's reader has gone (a request is made of
// bytes it has gone past, and an entry further on cannot be what it is for), so that neither
// side is held whole. Every difference becomes a finding on the line of the entry it concerns.
#pragma once
#include <functional>
#include <string>
#include <string_view>

#include "ctl/check_settings.h"
#include "ctl/restore_run.h"
#include "ctl/reuse_queue.h"
#include "model/document_reader.h"
#include "model/sent_request.h"

class RestoreMatch : public RequestSink {
public:
  // `onEntry` sees every entry the strict reader yields, in order. `readFrom` is how many bytes
  // of the document trovan's reader has taken before its first request (all of them, unless
  // told otherwise). `settings` are final: what they leave out is judged once, here.
  RestoreMatch(DocumentReader &reader, const CheckOptions &options, const RestoreSettings &settings,
               FindingSink findings, std::function<void(const Entry &)> onEntry,
               unsigned long long readFrom = ~0ULL);

  // One request trovan's restore would send, as its bytes, sent at `place` (where trovan's reader
  // stood: the entries up to there are read before the request is matched with one of them).
  void request(std::string_view bytes, RestorePlace place) override;
  void request(std::string_view bytes) { request(bytes, RestorePlace{}); }
  // The same request read back into its parts.
  bool takesParts() const override { return true; }
  void readRequest(const SentRequestView &request, RestorePlace place) override;
  // The restore has ended with `status`, or its process with `signal`: what was not sent is
  // reported, and a status other than 0 or a signal too.
  void finish(int status, int signal = 0);
  // Without a restore run: reads the rest of the document for its entries alone.
  void drain();

  // Requests seen, by RequestKind.
  unsigned long sent(RequestKind kind) const { return sent_[static_cast<int>(kind)]; }

private:
  struct Pending {
    Entry entry;
    bool expected;
    bool ownUser;      // the request should name `user`, not the entry's name or id
    std::string user;  // the entry's name as trovan's -t rule changes it
  };

  bool pull();
  void pullUpTo(unsigned long long offset);
  void expect(Pending &pending) const;
  // The user and the file a request for the entry should name, as the file system reads them
  // (empty where the kind names none).
  static const std::string &userOf(const Pending &pending);
  std::string fileNameOf(const Pending &pending) const;
  // What a request names: its kind, its user and its file name less the mount point (inVolume
  // false when the name does not start with the mount point).
  struct Target {
    EntryKind kind;
    bool inVolume;
    std::string_view path;
    std::string_view user;
  };
  // Whether the entry's path is `path`, in the one form entries are compared in.
  bool namesFile(const Pending &pending, std::string_view path) const;
  bool sameTarget(const Pending &pending, const Target &target) const;
  void dropThrough(std::size_t index);
  void reportNotSent(const Pending &pending);
  void compareValues(const Pending &pending, const SentRequestView &request);
  void reportUnmatched(const SentRequestView &request);
  Position lastPosition() const;

  DocumentReader &reader_;
  const CheckOptions &options_;
  const RestoreSettings &settings_;
  FindingSink findings_;
  std::function<void(const Entry &)> onEntry_;
  unsigned long long restoreOffset_;
  // Whether the options restore every trustee and filter (no -m, -u or -f leaves any out).
  const bool sendsEveryFileEntry_;
  ReuseQueue<Pending> pending_;
  void match(const SentRequestView &request);
  void matchElsewhere(const SentRequestView &request);

  SentRequest sentRequest_;  // the decoded texts of the request being read (for every request)
  bool readerDone_ = false;
  Position lastEntryAt_;
  unsigned long sent_[4] = {};
};
