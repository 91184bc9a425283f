// The --html page: one self-contained file (its script, styles and data inside it) that shows
// the volume as a tree to expand and collapse, a per-user view, a search box and the effective
// rights of a selected path. Only what is expanded is rendered, so a volume of a million
// entries stays usable.
#pragma once
#include <string>

#include "ctl/report_volume.h"

// The volume as the page's data: JSON that is safe inside a <script> element ('<', '>', '&',
// U+2028 and U+2029 written as \u escapes, so that no name can end the element).
void appendPageData(const ReportVolume &volume, std::string &out);

// The whole page.
std::string htmlPage(const ReportVolume &volume, const std::string &title);
