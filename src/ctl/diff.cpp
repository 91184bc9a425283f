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
#include "model/key_set.h"

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

// Reads every selected entry of `source`, handing each with its key hash to `use` four entries
// late: the index slot of its key is fetched as it is read, and the stored record under that
// slot two entries later, so that reading hides the waits for memory. Entries
// are handed on in their order, and may be moved from, with the reader (where it stands). False
// after a message when the document cannot be read to its end; findings that do not stop reading
// are listed on standard error.
template <typename Use>
bool readEntries(const DocumentOperand &source, const EntrySelection &selection,
                 const EntryIndex &index, KeySet &keys, Use use) {
  const std::string &label = source.label();
  DocumentReader reader(source.fd(), [&label](Finding finding) {
    reportError(label, finding.at.line, finding.at.column, finding.message);
  });
  reader.useKeys(keys);
  // Entries come out of the reader's queue quickly: the stored record is asked for two
  // entries after the slot, and used two entries later still.
  constexpr std::size_t kRecordLag = 2;
  constexpr std::size_t kUseLag = 4;
  constexpr std::size_t kDepth = kUseLag + 1;
  Entry entries[kDepth];  // the one being read, and those waiting to be used
  std::uint64_t hashes[kDepth] = {};
  std::size_t count = 0;  // selected entries read so far
  while (reader.next(entries[count % kDepth])) {
    if (!selection.selects(entries[count % kDepth])) continue;
    hashes[count % kDepth] = reader.entryHash();
    index.prefetch(hashes[count % kDepth]);
    if (count >= kRecordLag) index.prefetchRecord(hashes[(count - kRecordLag) % kDepth]);
    if (count >= kUseLag)
      use(entries[(count - kUseLag) % kDepth], hashes[(count - kUseLag) % kDepth], reader);
    ++count;
  }
  if (reader.readError() != 0) {
    reportError(label + ": " + std::strerror(reader.readError()));
    return false;
  }
  for (std::size_t at = count < kUseLag ? 0 : count - kUseLag; at < count; ++at)
    use(entries[at % kDepth], hashes[at % kDepth], reader);
  return !reader.failed();
}

int runDiff(const DiffOptions &options) {
  DocumentOperand oldSource;
  DocumentOperand newSource;
  if (!oldSource.open(options.oldOperand) || !newSource.open(options.newOperand)) return kTrouble;
  DiffTally tally;
  EntryIndex index;
  // One duplicate set serves both documents: the second one's grows no more.
  KeySet keys;
  if (!readEntries(oldSource, options.selection, index, keys,
                   [&](const Entry &entry, std::uint64_t hash, const DocumentReader &reader) {
                     ++tally.oldEntries;
                     index.makeRoom(reader.offset(), oldSource.fd());
                     index.add(entry, hash);
                   }))
    return kTrouble;
  std::vector<Difference> differences;
  StoredValue old;
  if (!readEntries(newSource, options.selection, index, keys,
                   [&](Entry &entry, std::uint64_t hash, const DocumentReader &) {
                     ++tally.newEntries;
                     if (!index.match(entry, hash, old))
                       differences.emplace_back(ChangeKind::added, std::move(entry));
                     else if (valuesDiffer(entry.kind, old.rights, old.amount, entry))
                       differences.emplace_back(ChangeKind::changed, std::move(entry), old.rights,
                                                std::string(old.amount));
                   }))
    return kTrouble;
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
