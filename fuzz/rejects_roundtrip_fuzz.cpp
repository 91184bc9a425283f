// Documents as plan --out, verify --remaining and apply --rejects write them: any document's
// entries, those with findings too, taken by trovanctl's strict reader and written one by one by
// the canonical writer (no section of its own, as those commands write). Besides crashes and
// leaks it checks that the round trip is stable: the written document read again gives as many
// entries, each the same, and written again it is the same bytes.
//
//   scripts/fuzz_smoke.sh, or after a fuzz build:
//   build/fuzz/fuzz/rejects_roundtrip_fuzz -max_total_time=60 fuzz/corpus/rejects_roundtrip
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "model/canonical_writer.h"
#include "model/document_reader.h"

namespace {

int bytesFd(const void *data, std::size_t size) {
  const int fd = memfd_create("document", MFD_CLOEXEC);
  const char *bytes = static_cast<const char *>(data);
  std::size_t done = 0;
  while (done < size) {
    const ssize_t count = write(fd, bytes + done, size - done);
    if (count <= 0) std::abort();
    done += static_cast<std::size_t>(count);
  }
  lseek(fd, 0, SEEK_SET);
  return fd;
}

std::string contents(int fd) {
  std::string text;
  char buffer[65536];
  lseek(fd, 0, SEEK_SET);
  for (ssize_t count; (count = read(fd, buffer, sizeof buffer)) > 0;)
    text.append(buffer, static_cast<std::size_t>(count));
  return text;
}

// Reads the document on `fd`, every finding allowed, and writes its entries as the entry
// documents do. Returns the written bytes; the entries go to `entries`.
std::string rewrite(int fd, std::vector<Entry> &entries) {
  const int output = memfd_create("entries", MFD_CLOEXEC);
  {
    DocumentReader reader(fd, [](Finding) {});
    CanonicalWriter writer(output);
    writer.begin();
    Entry entry;
    while (reader.next(entry)) {
      writer.write(entry);
      entries.push_back(entry);
    }
    if (writer.finish() != 0) std::abort();
  }
  std::string written = contents(output);
  close(output);
  return written;
}

// What the canonical form keeps of an entry. Entries of one path that follow one another share
// one <file> element, and so its zid (the first one's): a file's zid is never compared.
bool sameEntry(const Entry &a, const Entry &b) {
  const bool fileEntry = a.kind == EntryKind::trustee || a.kind == EntryKind::filter;
  return a.kind == b.kind && a.ad == b.ad && a.path == b.path && a.name == b.name && a.id == b.id &&
         a.rights == b.rights && a.amount == b.amount && a.spaceUsed == b.spaceUsed &&
         (fileEntry || a.zid == b.zid);
}

// Says where the round trip went wrong, then stops.
[[noreturn]] void fail(const char *what, std::size_t at, const std::string &once,
                       const std::string &twice) {
  std::size_t differ = 0;
  while (differ < once.size() && differ < twice.size() && once[differ] == twice[differ])
    ++differ;
  const std::size_t from = differ > 80 ? differ - 80 : 0;
  std::fprintf(stderr, "round trip: %s (entry %zu); written once, at byte %zu:\n%s\ntwice:\n%s\n",
               what, at, differ, once.substr(from, 240).c_str(), twice.substr(from, 240).c_str());
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const int input = bytesFd(data, size);
  std::vector<Entry> first;
  const std::string once = rewrite(input, first);
  close(input);
  const int written = bytesFd(once.data(), once.size());
  std::vector<Entry> second;
  const std::string twice = rewrite(written, second);
  close(written);
  if (second.size() != first.size()) fail("entry count", second.size(), once, twice);
  for (std::size_t at = 0; at < first.size(); ++at)
    if (!sameEntry(first[at], second[at])) {
      for (const Entry *entry : {&first[at], &second[at]})
        std::fprintf(stderr,
                     "kind %d ad %d path [%s] name [%s] id [%s] rights %u amount [%s] "
                     "spaceUsed [%s] zid [%s]\n",
                     static_cast<int>(entry->kind), entry->ad, entry->path.c_str(),
                     entry->name.c_str(), entry->id.c_str(), static_cast<unsigned>(entry->rights),
                     entry->amount.c_str(), entry->spaceUsed.c_str(), entry->zid.c_str());
      fail("entry", at, once, twice);
    }
  if (twice != once) fail("bytes", 0, once, twice);
  return 0;
}
