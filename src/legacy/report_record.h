// Writing the Metadata records of a legacy report line, straight from the line's fields.
#pragma once
#include <cstddef>
#include <cstdio>
#include <initializer_list>
#include <string_view>

// A value of a record form: plain text, a path made of pieces whose backslashes are written as
// slashes, or the right elements of a run of report letters (letter by letter, repeats included;
// a letter that is no right writes nothing after "Invalid access right : %c").
class RecordValue {
public:
  static RecordValue text(const char *value);
  static RecordValue elementsOf(const char *letters);
  // The path of field 1 under the -r prefix (or none): the combined text "/prefix/field1" (no
  // extra "/" when the prefix starts with one) loses everything up to its first ':'.
  static RecordValue path(const char *prefix, const char *field);

  void writeTo(std::FILE *out) const;

private:
  enum class Kind { kText, kPath, kElements };
  static constexpr std::size_t kMaxPieces = 4;
  Kind kind_ = Kind::kText;
  std::string_view pieces_[kMaxPieces];
  std::size_t pieceCount_ = 0;
};

// Writes `form` (a record form with "%s" for each value) with the values in order.
void writeRecord(std::FILE *out, const char *form, std::initializer_list<RecordValue> values);

// The kinds of report line, by the first keyword the line's field 0 begins with ("TRUSTEES" is
// a trustee line).
enum class ReportKind { trustee, dirQuota, userQuota, filter, other };
ReportKind reportKindOf(const char *keyword);

// Whether a first line is a report's header: it begins with "TRUSTEE.KXM".
bool isReportHeader(const char *line);

// Whether a trustee or user name gets "." and the tree appended under -t: all but [Public].
bool takesTreeName(const char *name);
