// trovanctl check DOC [restore options]: everything wrong with a document before trovan restore
// applies it, one finding a line, sorted by line, and a summary.
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <vector>

#include "ctl/check_settings.h"
#include "ctl/commands.h"
#include "ctl/document_source.h"
#include "ctl/output.h"
#include "ctl/restore_match.h"
#include "ctl/restore_run.h"
#include "model/document_reader.h"
#include "model/entry_rules.h"

namespace {

// What one check counts: entries by kind, and the requests a restore would send by kind.
struct Tally {
  unsigned long entries[4] = {};
  unsigned long requests[4] = {};
};

Row findingRow(const std::string &file, const Finding &finding) {
  Row row;
  row["type"] = "finding";
  row["file"] = file;
  row["line"] = finding.at.line;
  row["column"] = finding.at.column;
  row["code"] = finding.code;
  row["message"] = finding.message;
  return row;
}

Row summaryRow(const std::string &file, const Tally &tally, bool compared, std::size_t findings) {
  Row row;
  row["type"] = "summary";
  row["file"] = file;
  Row entries;
  unsigned long total = 0;
  for (int kind = 0; kind < 4; ++kind) {
    entries[std::string(kindKey(static_cast<EntryKind>(kind)))] = tally.entries[kind];
    total += tally.entries[kind];
  }
  entries["total"] = total;
  row["entries"] = entries;
  static constexpr const char *kRequestNames[] = {"addTrustee", "modifyInheritedRightsFilter",
                                                  "userSpaceRestrictions", "addQuota"};
  Row requests;
  total = 0;
  for (int kind = 0; kind < 4; ++kind) {
    requests[kRequestNames[kind]] = tally.requests[kind];
    total += tally.requests[kind];
  }
  requests["total"] = total;
  row["requests"] = requests;
  row["compared"] = compared;
  row["findings"] = findings;
  return row;
}

// Runs trovan's restore over the document's second descriptor into `match`. False after a
// message when the run cannot be made.
bool compareWithRestore(DocumentSource &source, const CheckOptions &options,
                        const RestoreSettings &settings, RestoreMatch &match) {
  const int restoreFd = source.second();
  if (restoreFd < 0) {
    reportError(source.label() + ": " + std::strerror(errno));
    return false;
  }
  const RestoreOutcome outcome = runRestore(restoreFd, options, settings, match);
  if (!outcome.failure.empty()) {
    reportError("check: cannot run trovan's restore: " + outcome.failure);
    return false;
  }
  match.finish(outcome.ran ? outcome.status : 0, outcome.signal);
  return true;
}

int runCheck(CheckOptions &options) {
  RestoreSettings settings;
  if (const std::string problem = resolveCheckOptions(options, settings); !problem.empty()) {
    reportError("check: " + problem);
    return kTrouble;
  }
  DocumentSource source(options.document);
  if (!source.ok()) {
    reportError(source.error());
    return kTrouble;
  }
  const std::string &file = source.label();

  std::vector<Finding> findings;
  const FindingSink sink = [&findings](Finding finding) { findings.push_back(std::move(finding)); };
  RuleSettings rules;
  rules.mountPoint = options.mountPoint;
  rules.rxlMode = options.rxlMode;
  Tally tally;
  bool compared = false;
  {
    DocumentReader reader(source.first(), sink);
    const auto onEntry = [&](const Entry &entry) {
      const int kind = static_cast<int>(entry.kind);
      ++tally.entries[kind];
      checkEntryRules(entry, rules, sink);
      // Without a restore run (-n) the options alone tell what would be sent; with one, the
      // requests it sends are counted instead.
      if (options.rxlMode && wouldRestore(entry, options, settings)) ++tally.requests[kind];
    };
    // Before its first request trovan has read nothing that the match needs to wait for.
    RestoreMatch match(reader, options, settings, sink, onEntry, 0);
    if (options.rxlMode) {
      // The console path runs commands: it is not run, only read.
      match.drain();
    } else {
      if (!compareWithRestore(source, options, settings, match)) return kTrouble;
      compared = true;
      for (int kind = 0; kind < 4; ++kind)
        tally.requests[kind] = match.sent(static_cast<RequestKind>(kind));
    }
    if (reader.readError() != 0) {
      reportError(file + ": " + std::strerror(reader.readError()));
      return kTrouble;
    }
  }

  std::stable_sort(findings.begin(), findings.end(), [](const Finding &a, const Finding &b) {
    return a.at.line != b.at.line ? a.at.line < b.at.line : a.at.column < b.at.column;
  });
  Output output(options.json ? Format::json : Format::text);
  for (const Finding &finding : findings)
    output.emit(findingRow(file, finding));
  output.emit(summaryRow(file, tally, compared, findings.size()));
  return findings.empty() ? kClean : kFindings;
}

}  // namespace

CommandRun defineCheck(CLI::App &command) {
  auto options = std::make_shared<CheckOptions>();
  command.add_option("DOC", options->document, "the Metadata document (- for standard input)")
      ->required()
      ->type_name("");
  command.add_option("-m,--meta", options->mask, "the kinds restored: letters t, u, d, a")
      ->type_name("MASK");
  command.add_option("-u,--usertype", options->userType, "only arbor or ad users")
      ->type_name("TYPE");
  command.add_option("-t,--tree", options->tree, "the tree name that replaces the saved one")
      ->type_name("TREE")
      ->each([options](const std::string &) { options->treeGiven = true; });
  command.add_option("-f,--filter", options->filter, "only paths the expression matches")
      ->type_name("FILTER")
      ->each([options](const std::string &) { options->filterGiven = true; });
  command.add_flag("-k,--no-gemel", options->noGemel, "requests without <gemelPath/>");
  command.add_flag("-n,--rxl", options->rxlMode, "trustees through the RXL console");
  command.add_option("--volume", options->volume, "the volume name requests carry")
      ->type_name("NAME");
  command
      .add_option("--mount-point", options->mountPoint,
                  "the mount point put before paths (default /mnt/VOLUME)")
      ->type_name("DIR");
  command.add_flag("--json", options->json, "JSON Lines: one object a finding, the summary last");
  return [options]() { return runCheck(*options); };
}
