#include "legacy/trustee_report.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "document/records.h"
#include "legacy/quoted_fields.h"
#include "legacy/report_line.h"
#include "legacy/report_record.h"

namespace {

constexpr char kSeparator = ',';
constexpr std::size_t kOutputBufferSize = 64 * 1024;

// "Invalid entry for %s in input file at line %d.\n". The text can be longer than a printf
// count can hold, so it is written as it stands, between the message's two halves.
void reportInvalidEntry(const char *text, long long lineNumber) {
  std::fputs("Invalid entry for ", stderr);
  std::fwrite(text, 1, std::strlen(text), stderr);
  std::fprintf(stderr, " in input file at line %lld.\n", lineNumber);
}

// Owns the output file, the -t/-r settings and the buffer of tree-qualified names for one pass.
class Conversion {
public:
  Conversion(const char *tree, const char *prefix) : tree_(tree), prefix_(prefix) {}
  ~Conversion() {
    std::free(qualifiedName_);
    if (out_ != nullptr) std::fclose(out_);
  }
  Conversion(const Conversion &) = delete;
  Conversion &operator=(const Conversion &) = delete;

  bool open(const char *outputPath) {
    out_ = std::fopen(outputPath, "we");
    if (out_ == nullptr) return false;
    std::setvbuf(out_, nullptr, _IOFBF, kOutputBufferSize);
    return true;
  }

  // Writes the records of one line. False when the conversion must stop.
  bool convertLine(char *line, long long lineNumber) {
    char *cursor = nullptr;
    const char *keyword = nextQuotedField(line, kSeparator, &cursor);
    if (keyword == nullptr) return true;
    const ReportKind kind = reportKindOf(keyword);
    if (kind == ReportKind::other) return true;
    const char *field[5] = {keyword};
    for (int i = 1; i <= 4; ++i) {
      field[i] = nextQuotedField(nullptr, kSeparator, &cursor);
      if (field[i] == nullptr) {
        // The line now ends where field 0's closing quotation mark was: '"' and the keyword.
        reportInvalidEntry(line, lineNumber);
        return true;
      }
    }
    switch (kind) {
    case ReportKind::trustee: {
      const char *name = qualified(field[3]);
      if (name == nullptr) return false;
      writeRecord(out_, kTrusteeSectionOpen, {});
      writeRecord(out_, kTrusteeFileRecord,
                  {RecordValue::path(prefix_, field[1]), RecordValue::text(name),
                   RecordValue::text(""), RecordValue::text(field[4]),
                   RecordValue::elementsOf(field[4])});
      writeRecord(out_, kTrusteeSectionClose, {});
      return true;
    }
    case ReportKind::filter:
      writeRecord(out_, kTrusteeSectionOpen, {});
      writeRecord(out_, kFilterFileRecord,
                  {RecordValue::path(prefix_, field[1]), RecordValue::text(field[3]),
                   RecordValue::elementsOf(field[3])});
      writeRecord(out_, kTrusteeSectionClose, {});
      return true;
    case ReportKind::dirQuota:
      writeRecord(out_, kDirQuotaSection,
                  {RecordValue::path(prefix_, field[1]), RecordValue::text(field[4]),
                   RecordValue::text(field[3])});
      return true;
    case ReportKind::userQuota: {
      const char *name = qualified(field[3]);
      if (name == nullptr) return false;
      writeRecord(out_, kUserQuotaSection, {RecordValue::text(field[4]), RecordValue::text(name)});
      return true;
    }
    case ReportKind::other: break;
    }
    return true;
  }

  // Ends the document. False when the document could not be written whole.
  bool finish(const char *outputPath) {
    std::fputs("</metadata>", out_);
    const bool written = std::ferror(out_) == 0;
    const bool closed = std::fclose(out_) == 0;
    out_ = nullptr;
    if (written && closed) return true;
    std::fprintf(stderr, "Unable to write temporary file : %s\n", outputPath);
    return false;
  }

  std::FILE *out() const { return out_; }

private:
  // The name with "." and the tree appended, unless there is no tree or it is [Public]. Null
  // after "Error getting enough buffer for TRUSTEE fdn".
  const char *qualified(const char *name) {
    if (tree_ == nullptr || !takesTreeName(name)) return name;
    const std::size_t nameLength = std::strlen(name);
    const std::size_t treeLength = std::strlen(tree_);
    const std::size_t needed = nameLength + 1 + treeLength + 1;
    if (needed > qualifiedCapacity_) {
      const std::size_t capacity =
          needed > 2 * qualifiedCapacity_ ? needed : 2 * qualifiedCapacity_;
      char *grown = static_cast<char *>(std::realloc(qualifiedName_, capacity));
      if (grown == nullptr) {
        std::fprintf(stderr, "Error getting enough buffer for TRUSTEE fdn\n");
        return nullptr;
      }
      qualifiedName_ = grown;
      qualifiedCapacity_ = capacity;
    }
    std::memcpy(qualifiedName_, name, nameLength);
    qualifiedName_[nameLength] = '.';
    std::memcpy(qualifiedName_ + nameLength + 1, tree_, treeLength + 1);
    return qualifiedName_;
  }

  const char *tree_;
  const char *prefix_;
  std::FILE *out_ = nullptr;
  char *qualifiedName_ = nullptr;
  std::size_t qualifiedCapacity_ = 0;
};

}  // namespace

int convertTrusteeReport(const char *tree, const char *outputPath, const char *prefix) {
  char *header = readReportLine();
  const bool isReport = isReportHeader(header);
  std::free(header);
  if (!isReport) {
    std::fprintf(stderr, "Invalid input file\n");
    return -1;
  }
  Conversion conversion(tree, prefix);
  if (!conversion.open(outputPath)) {
    std::fprintf(stderr, "Unable to open temporary file : %s\n", outputPath);
    return -1;
  }
  std::fprintf(stderr, "Tokens ATTR and OWNER are not supported.\n");
  std::fprintf(stderr, "Skipping tokens ATTR and OWNER.\n");
  std::fputs(kDocumentOpen, conversion.out());
  long long lineNumber = 0;
  while (char *line = readReportLine()) {
    const bool goOn = conversion.convertLine(line, ++lineNumber);
    std::free(line);
    // Stopping leaves the document without its closing tag; it is never read.
    if (!goOn) return -1;
  }
  return conversion.finish(outputPath) ? 0 : -1;
}
