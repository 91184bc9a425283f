// The rows of trovanctl diff: one a change, and the summary. Text and JSON are both made from
// the one Row, by the renderers here.
#pragma once
#include <string>
#include <string_view>

#include "ctl/output.h"
#include "model/entry.h"

enum class ChangeKind { added, removed, changed };

// A change row: the entry (the new one, or the old one when removed) and the old and new value
// (rights letters, or a quota amount; null where there is none).
Row changeRow(ChangeKind change, const Entry &entry, const Entry *old, const Entry *current);
std::string changeText(const Row &row);

struct DiffTally {
  unsigned long oldEntries = 0;
  unsigned long newEntries = 0;
  unsigned long added = 0;
  unsigned long removed = 0;
  unsigned long changed = 0;
};

Row diffSummaryRow(const std::string &oldLabel, const std::string &newLabel,
                   const DiffTally &tally);
std::string diffSummaryText(const Row &row);

// Whether an entry differs from the old values of its key (an entry of kind `kind`): rights for
// trustees and filters, the amount for quotas.
bool valuesDiffer(EntryKind kind, RightsSet oldRights, std::string_view oldAmount,
                  const Entry &current);
