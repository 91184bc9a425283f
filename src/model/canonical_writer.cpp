#include "model/canonical_writer.h"

#include <unistd.h>

#include <cerrno>

namespace {

constexpr std::size_t kFlushSize = 65536;

}  // namespace

CanonicalWriter::CanonicalWriter(int fd) : fd_(fd) { buffer_.reserve(kFlushSize + 8192); }

CanonicalWriter::~CanonicalWriter() = default;

void CanonicalWriter::begin() { put("<metadata>\n"); }

void CanonicalWriter::openSection(Section section) {
  closeSection();
  put("<");
  put(sectionElement(section));
  put(">\n");
  sectionOpen_ = true;
  section_ = section;
}

void CanonicalWriter::closeSection() {
  if (!sectionOpen_) return;
  closeFile();
  put("</");
  put(sectionElement(section_));
  put(">\n");
  sectionOpen_ = false;
  flush();
}

void CanonicalWriter::closeFile() {
  if (!fileOpen_) return;
  put("</file>\n");
  fileOpen_ = false;
}

void CanonicalWriter::write(const Entry &entry) {
  const Section section = sectionOf(entry.kind);
  if (!sectionOpen_ || section_ != section) openSection(section);
  switch (entry.kind) {
  case EntryKind::trustee:
  case EntryKind::filter:
    if (!fileOpen_ || filePath_ != entry.path) {
      closeFile();
      put("<file><zid>");
      putEncoded(entry.zid);
      put("</zid><path>");
      putCdata(entry.path);
      put("</path>\n");
      fileOpen_ = true;
      filePath_ = entry.path;
    }
    if (entry.kind == EntryKind::trustee) {
      put(entry.ad ? "<trustee type=\"adID\"><name>" : "<trustee><name>");
      putEncoded(entry.name);
      put("</name><id>");
      putEncoded(entry.id);
      put("</id><rights value=\"");
      put(rightsValue(entry.rights));
      put("\">");
      put(rightsElements(entry.rights));
      put("</rights></trustee>\n");
    } else {
      put("<inheritedRightsFilter value=\"");
      put(rightsValue(entry.rights));
      put("\">");
      put(rightsElements(entry.rights));
      put("</inheritedRightsFilter>\n");
    }
    break;
  case EntryKind::userQuota:
    put(entry.ad ? "<user type=\"adID\"><id>" : "<user><id>");
    putEncoded(entry.id);
    put("</id><spaceUsed>");
    putEncoded(entry.spaceUsed);
    put("</spaceUsed><quotaAmount>");
    putEncoded(entry.amount);
    put("</quotaAmount><name>");
    putEncoded(entry.name);
    put("</name></user>\n");
    break;
  case EntryKind::dirQuota:
    put("<directory><zid>");
    putEncoded(entry.zid);
    put("</zid><path>");
    putEncoded(entry.path);
    put("</path><spaceUsed>");
    putEncoded(entry.spaceUsed);
    put("</spaceUsed><quotaAmount>");
    putEncoded(entry.amount);
    put("</quotaAmount></directory>\n");
    break;
  }
  if (buffer_.size() >= kFlushSize) flush();
}

int CanonicalWriter::finish() {
  closeSection();
  put("</metadata>\n");
  flush();
  return error_;
}

void CanonicalWriter::putEncoded(std::string_view text) {
  for (const char c : text) {
    switch (c) {
    case '&': put("&amp;"); break;
    case '<': put("&lt;"); break;
    case '>': put("&gt;"); break;
    default: buffer_ += c;
    }
  }
}

// A CDATA section cannot hold "]]>": the text is split there into two sections.
void CanonicalWriter::putCdata(std::string_view text) {
  put("<![CDATA[");
  for (std::size_t end; (end = text.find("]]>")) != std::string_view::npos;) {
    put(text.substr(0, end + 2));
    put("]]><![CDATA[");
    text.remove_prefix(end + 2);
  }
  put(text);
  put("]]>");
}

void CanonicalWriter::flush() {
  std::size_t done = 0;
  while (error_ == 0 && done < buffer_.size()) {
    const ssize_t count = ::write(fd_, buffer_.data() + done, buffer_.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0)
      error_ = errno;
    else
      done += static_cast<std::size_t>(count);
  }
  buffer_.clear();
}
