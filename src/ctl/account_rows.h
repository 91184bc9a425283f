// The rows of plan, apply and verify: one per entry and a summary, each rendered as a text line
// from the same object that --json writes.
#pragma once
#include <initializer_list>
#include <string>
#include <utility>

#include "ctl/output.h"
#include "model/entry.h"

// An entry's row: "type" (plan, apply or verify), "action" (what happens to it), the entry's
// line, kind, path, user and value. Callers add "was", "flag", "reason", "result",
// "description".
Row entryRow(const char *type, const char *action, const Entry &entry);

// A summary row: "type" (plan-summary, apply-summary or verify-summary), the volume, the
// document's label, then each count under its name, in order.
using SummaryCounts = std::initializer_list<std::pair<const char *, unsigned long>>;
Row summaryRow(const char *type, const std::string &volume, const std::string &document,
               SummaryCounts counts);

// The text line of entryRow("apply" or "verify", action, entry) with nothing added, made
// without the row into `line` (its room kept from line to line): what apply writes for each
// entry sent or in place.
void outcomeLine(std::string &line, const char *action, const Entry &entry);

// Text lines of the rows above and of the summaries; "" for a type of no one's here.
std::string renderAccountText(const Row &row);
