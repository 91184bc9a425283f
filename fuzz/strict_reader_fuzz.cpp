// Metadata documents through trovanctl's strict reader, the entry rules and the canonical
// writer. Besides crashes and leaks it checks one property: a document the reader takes
// without a finding, written in the canonical form and read again, gives the same entries
// (same keys, rights, amounts and places in the same order of kinds) and no finding.
// The same bytes also go through the end-tag repair (read in odd sizes) and the reader behind
// it: without the end tags it put back, its bytes are the input's.
//
//   scripts/fuzz_smoke.sh, or after a fuzz build:
//   build/fuzz/fuzz/strict_reader_fuzz -max_total_time=60 fuzz/corpus/strict_reader
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "model/canonical_writer.h"
#include "model/document_reader.h"
#include "model/entry_rules.h"
#include "model/repaired_reader.h"

namespace {

int bytesFd(const std::uint8_t *data, std::size_t size) {
  const int fd = memfd_create("document", MFD_CLOEXEC);
  std::size_t done = 0;
  while (done < size) {
    const ssize_t count = write(fd, data + done, size - done);
    if (count <= 0) std::abort();
    done += static_cast<std::size_t>(count);
  }
  lseek(fd, 0, SEEK_SET);
  return fd;
}

struct Reading {
  std::vector<Entry> entries;
  std::size_t findings = 0;
};

// Reads a document; with `writer`, writes every entry and section through it as they come.
Reading readAll(int fd, CanonicalWriter *writer) {
  Reading reading;
  DocumentReader reader(fd, [&reading](Finding) { ++reading.findings; });
  if (writer != nullptr) {
    writer->begin();
    reader.onSection([writer](Section section, bool opening) {
      if (opening)
        writer->openSection(section);
      else
        writer->closeSection();
    });
  }
  RuleSettings rules;
  Entry entry;
  while (reader.next(entry)) {
    checkEntryRules(entry, rules, [](Finding) {});
    if (writer != nullptr) writer->write(entry);
    reading.entries.push_back(entry);
  }
  if (writer != nullptr) writer->finish();
  return reading;
}

bool sameEntry(const Entry &a, const Entry &b) {
  std::string keyA;
  std::string keyB;
  entryKey(a, keyA);
  entryKey(b, keyB);
  return keyA == keyB && a.rights == b.rights && a.amount == b.amount && a.name == b.name &&
         a.spaceUsed == b.spaceUsed && a.zid == b.zid;
}

// The repair's bytes, without its insertions, are the input; the reader behind it only reads.
void checkRepair(const std::uint8_t *data, std::size_t size) {
  const int input = bytesFd(data, size);
  std::string repaired;
  std::vector<EndTagRepair::Insertion> insertions;
  {
    EndTagRepair step(input);
    char buffer[4099];
    for (long count; (count = step.read(buffer, sizeof buffer)) > 0;)
      repaired.append(buffer, static_cast<std::size_t>(count));
    insertions = step.insertions();
  }
  std::string back;
  std::size_t from = 0;
  for (const EndTagRepair::Insertion &insertion : insertions) {
    if (insertion.offset < from || insertion.offset + insertion.length > repaired.size() ||
        repaired.compare(insertion.offset, 2, "</") != 0)
      std::abort();
    back.append(repaired, from, insertion.offset - from);
    from = insertion.offset + insertion.length;
  }
  back.append(repaired, from);
  if (back != std::string_view(reinterpret_cast<const char *>(data), size)) std::abort();
  lseek(input, 0, SEEK_SET);
  {
    RepairedReader reader(input, true, [](Finding) {});
    Entry entry;
    while (reader.next(entry)) {
    }
  }
  close(input);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const int input = bytesFd(data, size);
  const int output = memfd_create("canonical", MFD_CLOEXEC);
  Reading first;
  {
    CanonicalWriter writer(output);
    first = readAll(input, &writer);
  }
  close(input);
  if (first.findings == 0) {
    lseek(output, 0, SEEK_SET);
    const Reading second = readAll(output, nullptr);
    if (second.findings != 0 || second.entries.size() != first.entries.size()) std::abort();
    for (std::size_t at = 0; at < first.entries.size(); ++at)
      if (!sameEntry(first.entries[at], second.entries[at])) std::abort();
  }
  close(output);
  checkRepair(data, size);
  return 0;
}
