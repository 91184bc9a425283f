// Arbitrary bytes read back as a request of trovan's, by the reader in use and by the first
// reader kept as the reference: both must give the same answer and, for a request they read,
// the same parts, each text decoded or standing in the request's bytes alike.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "model/sent_request.h"
#include "sent_request_oracle.h"

namespace {

// Where a text of a view stands: 0 empty, 1 in the decoded storage, 2 elsewhere (the bytes).
int place(std::string_view text, const std::string &storage) {
  if (text.empty()) return 0;
  return text.data() == storage.data() ? 1 : 2;
}

bool same(const SentRequestView &a, const SentRequest &aDecoded, const SentRequestView &b,
          const SentRequest &bDecoded) {
  return a.kind == b.kind && a.ad == b.ad && a.gemel == b.gemel && a.rights == b.rights &&
         a.unknownRight == b.unknownRight && a.fileName == b.fileName && a.user == b.user &&
         a.volume == b.volume && a.amount == b.amount &&
         place(a.fileName, aDecoded.fileName) == place(b.fileName, bDecoded.fileName) &&
         place(a.user, aDecoded.user) == place(b.user, bDecoded.user) &&
         place(a.volume, aDecoded.volume) == place(b.volume, bDecoded.volume) &&
         place(a.amount, aDecoded.amount) == place(b.amount, bDecoded.amount);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char *>(data), size);
  SentRequestView now, expected;
  SentRequest nowDecoded, expectedDecoded;
  const bool read = readSentRequest(bytes, now, nowDecoded);
  if (read != oracle::readSentRequest(bytes, expected, expectedDecoded)) std::abort();
  if (read && !same(now, nowDecoded, expected, expectedDecoded)) std::abort();
  return 0;
}
