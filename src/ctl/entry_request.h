// The request trovan restore sends for one entry of a document, built by trovan's own request
// builders from the texts as trovan's reader takes them (the raw texts of the entry): the
// mount point before a path, the -t tree name put into a user's name, rights in table order.
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

class EntryRequests {
public:
  explicit EntryRequests(const CheckOptions &options) : options_(options) {}
  // Builds the request of `entry` into requestBuffer. False when trovan would send none: the
  // user's name does not fit its field once the tree name is put in.
  bool build(const Entry &entry, EntryRequest &request);

private:
  bool userName(const Entry &entry);

  const CheckOptions &options_;
  std::string path_;
  std::string rights_;
  std::string name_;
};
