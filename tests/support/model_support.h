// Test support for trovanctl's document model: a document given as bytes, read whole by the
// strict reader into its entries, findings and section events; and the canonical writer's
// output captured as bytes.
#pragma once
#include <sys/mman.h>
#include <unistd.h>

#include <string>
#include <string_view>
#include <vector>

#include "model/canonical_writer.h"
#include "model/document_reader.h"
#include "model/key_set.h"

// A descriptor reading `bytes` from their start (an anonymous memory file), closed on scope end.
class BytesFd {
public:
  explicit BytesFd(std::string_view bytes) : fd_(memfd_create("document", MFD_CLOEXEC)) {
    std::size_t done = 0;
    while (done < bytes.size()) {
      const ssize_t count = write(fd_, bytes.data() + done, bytes.size() - done);
      if (count <= 0) break;
      done += static_cast<std::size_t>(count);
    }
    lseek(fd_, 0, SEEK_SET);
  }
  ~BytesFd() { close(fd_); }
  BytesFd(const BytesFd &) = delete;
  BytesFd &operator=(const BytesFd &) = delete;
  int fd() const { return fd_; }

private:
  int fd_;
};

struct ReadResult {
  std::vector<Entry> entries;
  std::vector<Finding> findings;
  std::vector<std::pair<Section, bool>> sections;
  bool failed = false;
};

// An entry's key, as entryKey() makes it.
inline std::string keyOf(const Entry &entry) {
  std::string key;
  entryKey(entry, key);
  return key;
}

// With `keys`, the reader looks duplicates up in that set (see DocumentReader::useKeys).
inline ReadResult readDocument(std::string_view bytes, KeySet *keys = nullptr) {
  BytesFd input(bytes);
  ReadResult result;
  DocumentReader reader(input.fd(),
                        [&result](Finding finding) { result.findings.push_back(finding); });
  if (keys != nullptr) reader.useKeys(*keys);
  reader.onSection([&result](Section section, bool opening) {
    result.sections.push_back({section, opening});
  });
  Entry entry;
  while (reader.next(entry))
    result.entries.push_back(entry);
  result.failed = reader.failed();
  return result;
}

// "LINE:COLUMN code" of each finding, for compact comparisons.
inline std::vector<std::string> findingTexts(const ReadResult &result) {
  std::vector<std::string> texts;
  for (const Finding &finding : result.findings)
    texts.push_back(std::to_string(finding.at.line) + ":" + std::to_string(finding.at.column) +
                    " " + finding.code);
  return texts;
}

// The document the canonical writer makes of what the reader read, sections included.
inline std::string rewrite(std::string_view bytes) {
  BytesFd input(bytes);
  BytesFd output("");
  {
    DocumentReader reader(input.fd(), nullptr);
    CanonicalWriter writer(output.fd());
    writer.begin();
    reader.onSection([&writer](Section section, bool opening) {
      if (opening)
        writer.openSection(section);
      else
        writer.closeSection();
    });
    Entry entry;
    while (reader.next(entry))
      writer.write(entry);
    writer.finish();
  }
  std::string text;
  lseek(output.fd(), 0, SEEK_SET);
  char buffer[65536];
  for (ssize_t count; (count = read(output.fd(), buffer, sizeof buffer)) > 0;)
    text.append(buffer, static_cast<std::size_t>(count));
  return text;
}
