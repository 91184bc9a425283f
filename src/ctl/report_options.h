// The settings of `trovanctl report`, validated once.
#pragma once
#include <string>

#include "ctl/report_lines.h"

struct ReportOptions {
  std::string document;  // a file name, or "-" for standard input
  std::string by = "path";
  std::string format = "text";
  bool formatGiven = false;
  std::string path, user, rights, kind;
  bool pathGiven = false, userGiven = false, rightsGiven = false;
  std::string effectivePath;
  bool effectiveGiven = false;
  bool effectiveAll = false;
  std::string html;  // --html FILE
};

struct ReportPlan {
  ReportView view = ReportView::byPath;
  LineFilter filter;
};

// Checks the options and fills `plan`. Returns an empty string, or what is wrong.
std::string resolveReportOptions(const ReportOptions &options, ReportPlan &plan);
