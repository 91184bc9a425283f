// trovanctl map DOC: a new canonical document from an old one, with users, the tree name and
// paths rewritten and entries selected. Entries a rule cannot map are listed and kept as they
// are (or dropped with --drop-unmapped, listed all the same); nothing is left out silently.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <memory>
#include <sstream>

#include "ctl/commands.h"
#include "ctl/document_operand.h"
#include "ctl/document_output.h"
#include "ctl/entry_selection.h"
#include "ctl/map_rules.h"
#include "ctl/output.h"
#include "model/canonical_writer.h"
#include "model/key_set.h"
#include "model/repaired_reader.h"

namespace {

struct MapOptions {
  std::string document;
  std::string usersFile;
  std::string tree;
  std::vector<std::string> rebase;
  EntrySelection selection;
  bool dropUnmapped = false;
  bool repairEndTags = false;
  std::string output;
};

// Reads the mapping file and the -r rules into `rules`. False after a message.
bool loadRules(const MapOptions &options, MapRules &rules) {
  rules.tree = options.tree;
  for (const std::string &text : options.rebase) {
    std::pair<std::string, std::string> rule;
    if (!parseRebase(text, rule)) {
      reportError("map: -r wants OLD=NEW, not " + text);
      return false;
    }
    rules.rebase.push_back(rule);
  }
  if (options.usersFile.empty()) return true;
  std::ifstream file(options.usersFile, std::ios::binary);
  if (!file) {
    reportError(options.usersFile + ": " + std::strerror(errno));
    return false;
  }
  std::ostringstream text;
  text << file.rdbuf();
  rules.hasUsers = true;
  if (std::string problem = parseUserMap(text.str(), rules.users); !problem.empty()) {
    reportError(options.usersFile + ":" + problem);
    return false;
  }
  return true;
}

std::string entryLabel(const Entry &entry) {
  std::string label(kindName(entry.kind));
  if (entry.kind != EntryKind::userQuota) label += " " + comparablePath(entry);
  if (entry.kind == EntryKind::trustee || entry.kind == EntryKind::userQuota)
    label += " " + userLabel(entry);
  return label;
}

int runMap(const MapOptions &options) {
  MapRules rules;
  if (!loadRules(options, rules)) return kTrouble;
  DocumentOperand source;
  if (!source.open(options.document)) return kTrouble;
  DocumentOutput output;
  if (!output.open(options.output)) return kTrouble;
  unsigned long listed = 0;
  const std::string &label = source.label();
  const auto list = [&](Position at, const std::string &message) {
    reportError(label, at.line, at.column, message);
    ++listed;
  };
  CanonicalWriter writer(output.fd());
  RepairedReader input(source.fd(), options.repairEndTags,
                       [&](Finding finding) { list(finding.at, finding.message); });
  DocumentReader &reader = input.reader();
  reader.onSection([&writer](Section section, bool opening) {
    if (opening) writer.openSection(section);
  });
  writer.begin();
  KeySet written;
  Entry entry;
  while (input.next(entry)) {
    if (!options.selection.selects(entry)) continue;
    if (const std::string problem = applyMapRules(rules, entry); !problem.empty()) {
      list(entry.at, entryLabel(entry) + ": " + problem +
                         (options.dropUnmapped ? "; left out" : "; kept unchanged"));
      if (options.dropUnmapped) continue;
    }
    if (const unsigned long first = written.insertHash(entryKeyHash(entry), entry.at.line);
        first != 0)
      list(entry.at, entryLabel(entry) + ": the same entry as the one of line " +
                         std::to_string(first) + " once mapped; both are written");
    writer.write(entry);
  }
  if (reader.readError() != 0) {
    reportError(label + ": " + std::strerror(reader.readError()));
    return kTrouble;
  }
  if (reader.failed()) return kTrouble;
  if (!output.finish(writer.finish())) return kTrouble;
  return listed == 0 ? kClean : kFindings;
}

}  // namespace

CommandRun defineMap(CLI::App &command) {
  auto options = std::make_shared<MapOptions>();
  command.add_option("DOC", options->document, "the document (- for standard input, vol:NAME)")
      ->required()
      ->type_name("");
  command.add_option("-U,--users", options->usersFile, "the user mapping file (CSV old,new)")
      ->type_name("FILE");
  command.add_option("-t,--tree", options->tree, "the tree name that replaces each Arbor name's")
      ->type_name("TREE");
  command
      .add_option("-r,--rebase", options->rebase, "paths under OLD moved under NEW (repeatable)")
      ->type_name("OLD=NEW");
  options->selection.define(command);
  command.add_flag("--drop-unmapped", options->dropUnmapped,
                   "leave out the entries a rule cannot map (still listed)");
  command.add_flag("--repair-end-tags", options->repairEndTags,
                   "put back end tags lost by hand, each one listed (status 1)");
  command.add_option("-o,--output", options->output, "write to FILE (replaced only on success)")
      ->type_name("FILE");
  return [options]() { return runMap(*options); };
}
