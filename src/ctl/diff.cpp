// trovanctl diff OLD NEW: per-entry differences between two documents. OLD is held compactly
// by key (EntryIndex) and NEW streamed against it: entries in either document may come in any
// order, as trovan save writes them in the file system's order. Only the differences are
// kept, to be sorted by path.
#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "ctl/commands.h"
#include "ctl/diff_rows.h"
#include "ctl/document_operand.h"
#include "ctl/entry_selection.h"
#include "ctl/output.h"
#include "model/document_reader.h"
#include "model/entry_index.h"

namespace {

struct DiffOptions {
  std::string oldOperand;
  std::string newOperand;
  EntrySelection selection;
  bool json = false;
};

struct Difference {
  ChangeKind change;
  Entry entry;  // the new entry, or the old one when removed
  RightsSet oldRights = 0;
  std::string oldAmount;
  std::string order;  // path, kind and user: made once, so that sorting compares only this

  Difference(ChangeKind kind, Entry &&what, RightsSet rights = 0, std::string amount = {})
      : change(kind), entry(std::move(what)), oldRights(rights), oldAmount(std::move(amount)) {
    order = comparablePath(entry);
    order += '\0';
    order += static_cast<char>('0' + static_cast<int>(entry.kind));
    order += userLabel(entry);
  }
  bool operator<(const Difference &other) const { return order < other.order; }
};

// Reads every selected entry of `source`, giving each to `take`. False after a message when the
// document cannot be read to its end; findings that do not stop reading are listed on
// standard error.
template <typename Take>
bool readEntries(const DocumentOperand &source, const EntrySelection &selection, Take take) {
  const std::string &label = source.label();
  DocumentReader reader(source.fd(), [&label](Finding finding) {
    reportError(label, finding.at.line, finding.at.column, finding.message);
  });
  Entry entry;
  while (reader.next(entry))
    if (selection.selects(entry)) take(entry);
  if (reader.readError() != 0) {
    reportError(label + ": " + std::strerror(reader.readError()));
    return false;
  }
  return !reader.failed();
}

// Hands each entry on one entry late, the index slot of its key fetched meanwhile: reading the
// next entry hides the wait for memory. Entries are handed on in their order.
template <typename Use> class OneBehind {
public:
  OneBehind(const EntryIndex &index, Use use) : index_(index), use_(use) {}
  void operator()(Entry &entry) {
    index_.prefetch(entry);
    if (waiting_) use_(held_);
    std::swap(held_, entry);
    waiting_ = true;
  }
  void finish() {
    if (waiting_) use_(held_);
    waiting_ = false;
  }

private:
  const EntryIndex &index_;
  Use use_;
  Entry held_;
  bool waiting_ = false;
};

int runDiff(const DiffOptions &options) {
  DocumentOperand oldSource;
  DocumentOperand newSource;
  if (!oldSource.open(options.oldOperand) || !newSource.open(options.newOperand)) return kTrouble;
  DiffTally tally;
  EntryIndex index;
  OneBehind adding(index, [&](const Entry &entry) { index.add(entry); });
  if (!readEntries(oldSource, options.selection, [&](Entry &entry) {
        ++tally.oldEntries;
        adding(entry);
      }))
    return kTrouble;
  adding.finish();
  std::vector<Difference> differences;
  Entry old;
  OneBehind matching(index, [&](Entry &entry) {
    if (!index.match(entry, old)) {
      differences.emplace_back(ChangeKind::added, std::move(entry));
    } else if (valuesDiffer(old, entry)) {
      differences.emplace_back(ChangeKind::changed, std::move(entry), old.rights, old.amount);
    }
  });
  if (!readEntries(newSource, options.selection, [&](Entry &entry) {
        ++tally.newEntries;
        matching(entry);
      }))
    return kTrouble;
  matching.finish();
  index.forEachUnmatched(
      [&](const Entry &entry) { differences.emplace_back(ChangeKind::removed, Entry(entry)); });
  std::sort(differences.begin(), differences.end());
  Output output(options.json ? Format::json : Format::text);
  for (const Difference &difference : differences) {
    Entry before = difference.entry;
    before.rights = difference.oldRights;
    before.amount = difference.oldAmount;
    switch (difference.change) {
    case ChangeKind::added:
      ++tally.added;
      output.emit(changeRow(ChangeKind::added, difference.entry, nullptr, &difference.entry),
                  changeText);
      break;
    case ChangeKind::removed:
      ++tally.removed;
      output.emit(changeRow(ChangeKind::removed, difference.entry, &difference.entry, nullptr),
                  changeText);
      break;
    case ChangeKind::changed:
      ++tally.changed;
      output.emit(changeRow(ChangeKind::changed, difference.entry, &before, &difference.entry),
                  changeText);
      break;
    }
  }
  output.emit(diffSummaryRow(oldSource.label(), newSource.label(), tally), diffSummaryText);
  return differences.empty() ? kClean : kFindings;
}

}  // namespace

CommandRun defineDiff(CLI::App &command) {
  auto options = std::make_shared<DiffOptions>();
  command
      .add_option("OLD", options->oldOperand, "the old document (- for standard input, vol:NAME)")
      ->required()
      ->type_name("");
  command
      .add_option("NEW", options->newOperand, "the new document (- for standard input, vol:NAME)")
      ->required()
      ->type_name("");
  options->selection.define(command);
  command.add_flag("--json", options->json, "JSON Lines: one object a change, the summary last");
  return [options]() { return runDiff(*options); };
}
