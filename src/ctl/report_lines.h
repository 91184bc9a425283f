// The lines of a report: one fact each (an assignment, a filter, a quota, a trustee's effective
// rights at a path), made by the views in their order, kept or dropped by the filters, and
// written by one of the formats.
#pragma once
#include <cstdio>
#include <memory>
#include <string>

#include "ctl/report_volume.h"

enum class LineKind : std::uint8_t { trustee, filter, userQuota, dirQuota, effective };

struct ReportLine {
  LineKind kind;
  const std::string_view *path = nullptr;    // none for a user quota
  std::uint32_t user = kNone;                // none for a filter or a directory quota
  RightsSet rights = 0;                      // trustee, filter, effective (supervisor widened)
  const std::string_view *amount = nullptr;  // the quotas
  const std::string_view *from = nullptr;    // effective: the path of the assignment
};

enum class ReportView { byPath, byUser, effective, effectiveAll };

// What the line filters keep (--path, --user, --rights, --kind).
struct LineFilter {
  bool byPath = false;
  std::string path;
  bool byUser = false;
  std::string user;
  RightsSet rights = 0;
  std::string kind;  // "", arbor, ad, trustee, filter, user-quota, dir-quota

  bool keeps(const ReportVolume &volume, const ReportLine &line) const;
};

// Where the lines go, in the order of the view.
class LineWriter {
public:
  virtual ~LineWriter() = default;
  virtual void line(const ReportLine &line) = 0;
  virtual void finish() = 0;
};

std::string_view lineKindName(LineKind kind);  // "trustee", "filter", "user-quota", ...

// The lower-case letters of a set of rights ("rwf"), as rightsLetters makes them, from a table.
std::string_view lettersOf(RightsSet rights);

// The one line that says what effective rights leave out.
extern const char kEffectiveNote[];

// The formats: aligned text, CSV (RFC 4180) and JSON Lines. Each writes to `stream`.
std::unique_ptr<LineWriter> makeTextWriter(const ReportVolume &volume, ReportView view,
                                           std::FILE *stream);
std::unique_ptr<LineWriter> makeCsvWriter(const ReportVolume &volume, std::FILE *stream);
std::unique_ptr<LineWriter> makeJsonWriter(const ReportVolume &volume, ReportView view,
                                           std::FILE *stream);

// Makes the lines of `view` (for effective, at `effectivePath`) and hands the kept ones over.
void writeView(const ReportVolume &volume, ReportView view, const std::string &effectivePath,
               const LineFilter &filter, LineWriter &writer);
