#include "ctl/report_options.h"

#include <cctype>

#include "ctl/kind_option.h"
#include "document/rights.h"

namespace {

// The set of rights letters (either case) in `letters`, or an error.
std::string rightsOf(const std::string &letters, RightsSet &rights) {
  for (const char letter : letters) {
    const char lower = char(std::tolower(static_cast<unsigned char>(letter)));
    RightsSet bit = 0;
    for (std::size_t at = 0; at < sizeof kRights / sizeof kRights[0]; ++at)
      if (kRights[at].letter == lower) bit = RightsSet(1u << at);
    if (bit == 0) return std::string("unknown right letter in --rights: ") + letter;
    rights |= bit;
  }
  if (rights == 0) return "--rights needs at least one letter";
  return "";
}

std::string viewOf(const ReportOptions &options, ReportView &view) {
  if (options.by != "path" && options.by != "user")
    return "unknown view (--by): " + options.by + " (path or user)";
  view = options.by == "user" ? ReportView::byUser : ReportView::byPath;
  if (options.effectiveGiven && options.effectiveAll)
    return "--effective and --effective-all cannot be used together";
  if (options.effectiveGiven) view = ReportView::effective;
  if (options.effectiveAll) view = ReportView::effectiveAll;
  if (options.by == "user" && (options.effectiveGiven || options.effectiveAll))
    return "--by user cannot be used with --effective or --effective-all";
  return "";
}

}  // namespace

std::string resolveReportOptions(const ReportOptions &options, ReportPlan &plan) {
  if (std::string problem = viewOf(options, plan.view); !problem.empty()) return problem;
  if (options.format != "text" && options.format != "csv" && options.format != "json")
    return "unknown format (--format): " + options.format + " (text, csv or json)";
  // A user kind, or an entry kind in either spelling (kept in the option's own).
  std::string kind = options.kind;
  EntryKind entryKind;
  const bool isEntryKind = kindFromOption(kind, entryKind);
  if (isEntryKind) kind = kindOptionName(entryKind);
  if (!kind.empty() && kind != "arbor" && kind != "ad" && !isEntryKind)
    return "unknown kind (--kind): " + options.kind +
           " (arbor, ad, trustee, filter, user-quota or dir-quota)";
  if (options.rightsGiven) {
    if (std::string problem = rightsOf(options.rights, plan.filter.rights); !problem.empty())
      return problem;
  }
  if (!options.html.empty() &&
      (options.formatGiven || options.pathGiven || options.userGiven || options.rightsGiven ||
       !options.kind.empty() || options.effectiveGiven || options.effectiveAll ||
       options.by != "path"))
    return "--html writes the whole volume: it takes no view, filter or format option";
  plan.filter.byPath = options.pathGiven;
  plan.filter.path = nodePath(options.path);
  plan.filter.byUser = options.userGiven;
  plan.filter.user = options.user;
  plan.filter.kind = kind;
  return "";
}
