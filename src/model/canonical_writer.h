// Writes entries as a Metadata document in the canonical form: byte for byte the form that
// trovan save writes from the file system's info files, which trovan restore reads correctly.
#pragma once
#include <string>

#include "model/entry.h"

class CanonicalWriter {
public:
  // Writes to `fd` (left open), through a buffer of 64 KiB.
  explicit CanonicalWriter(int fd);
  ~CanonicalWriter();
  CanonicalWriter(const CanonicalWriter &) = delete;
  CanonicalWriter &operator=(const CanonicalWriter &) = delete;

  // "<metadata>\n"; called once, first.
  void begin();
  // Opens a section (closing the one that is open), even one that will stay empty.
  void openSection(Section section);
  // Closes the open section, if any.
  void closeSection();
  // Writes one entry, opening its section unless it is the open one. Trustees and filters of
  // one path that follow one another share one <file> element, as the file system writes them.
  void write(const Entry &entry);
  // Closes what is open, writes "</metadata>\n" and flushes. Returns 0, or the errno of the
  // write that failed (nothing more is written after a failure).
  int finish();

private:
  void closeFile();
  void flush();
  void put(std::string_view text) { buffer_ += text; }
  void putEncoded(std::string_view text);
  void putCdata(std::string_view text);

  int fd_;
  int error_ = 0;
  std::string buffer_;
  bool sectionOpen_ = false;
  Section section_ = Section::trustees;
  bool fileOpen_ = false;
  std::string filePath_;
};
