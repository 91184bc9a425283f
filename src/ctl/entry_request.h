// The request trovan restore sends for one entry of a document, built by trovan's own request
// builders from the texts as trovan's reader takes them (the raw texts of the entry): the
// mount point before a path, the -t tree name put into a user's name, the rights elements as
// the document lists them.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>

#include "ctl/check_settings.h"
#include "model/entry.h"

struct EntryRequest {
  std::size_t length = 0;         // the request's bytes, in requestBuffer
  std::string_view replyElement;  // what its reply holds
  bool volumeRequest = false;     // sent to the volume command file, not the file one
};

// `name` with -t's tree name put in as trovan's reader puts it (unchanged without -t), into
// `out`. False when it no longer fits trovan's name field: trovan then sends nothing for the
// entry.
bool putTreeName(std::string_view name, const CheckOptions &options, std::string &out);
inline constexpr std::string_view kTreeNameDoesNotFit =
    "the name does not fit its field with the tree name put in";

class EntryRequests {
public:
  explicit EntryRequests(const CheckOptions &options) : options_(options) {}
  // Builds the request of `entry` into requestBuffer. False when trovan would send none (a
  // value does not fit trovan's field); why() then says which, for the account.
  bool build(const Entry &entry, EntryRequest &request);
  std::string_view why() const { return why_; }

private:
  bool userName(const Entry &entry);
  bool rights(const Entry &entry);

  const CheckOptions &options_;
  std::string path_;
  std::string rights_;
  std::string name_;
  std::string_view why_;
};
