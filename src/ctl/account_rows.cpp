#include "ctl/account_rows.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "ctl/volume_plan.h"
#include "document/rights.h"

namespace {

std::string pathOf(const Entry &entry) {
  return entry.kind == EntryKind::userQuota ? "" : comparablePath(entry);
}

// "trustee /a bob.corp.TREE. [rwf]", "user quota bob.corp.TREE. 1000"
std::string entryText(const Row &row) {
  std::string text = row.value("kind", std::string());
  for (const char *member : {"path", "user", "value"}) {
    const std::string value = row.value(member, std::string());
    if (!value.empty()) text += " " + value;
  }
  return text;
}

const char *symbolOf(const std::string &action) {
  if (action == "add") return "+";
  if (action == "change") return "~";
  if (action == "extra") return "=";
  if (action == "remove") return "-";
  if (action == "refuse") return "x";
  return " ";
}

// plan: "+ trustee /a bob [rwf]", "~ ... (now [rf])", "  ! reason"
std::string planText(const Row &row) {
  const std::string action = row.value("action", std::string());
  std::string text = std::string(symbolOf(action)) + " " + entryText(row);
  if (row.contains("was")) text += " (now " + row["was"].get<std::string>() + ")";
  if (action == "extra") text += " (not in the document: a restore keeps it)";
  if (!row.contains("reason")) return text;
  if (action == "refuse") return text + ": never sent: " + row["reason"].get<std::string>();
  if (action == "extra") return text + "; " + row["reason"].get<std::string>();
  text += ": may be refused: " + row["reason"].get<std::string>();
  return text;
}

// apply and verify: "applied   trustee /a bob [rwf]", without the result or reason.
void outcomeStart(std::string &text, std::string_view action, std::string_view kind,
                  std::string_view path, std::string_view user, std::string_view value) {
  text.assign(action);
  if (text.size() < 9) text.append(9 - text.size(), ' ');
  text += ' ';
  text += kind;
  for (const std::string_view part : {path, user, value}) {
    if (part.empty()) continue;
    text += ' ';
    text += part;
  }
}

// apply and verify: "applied   trustee /a bob [rwf]", "refused   ...: 3 user not found"
std::string outcomeText(const Row &row) {
  std::string text;
  outcomeStart(text, row.value("action", std::string()), row.value("kind", std::string()),
               row.value("path", std::string()), row.value("user", std::string()),
               row.value("value", std::string()));
  if (row.contains("result"))
    text += ": " + std::to_string(row["result"].get<int>()) + " " +
            row.value("description", std::string());
  else if (row.contains("reason"))
    text += ": " + row["reason"].get<std::string>();
  return text;
}

std::string userOf(const Entry &entry) {
  return entry.kind == EntryKind::trustee || entry.kind == EntryKind::userQuota ? userLabel(entry)
                                                                                : std::string();
}

std::string count(const Row &row, const char *member, const char *words) {
  return std::to_string(row.value(member, 0UL)) + " " + words;
}

// "plan VOL <- DOC: ", the start of every summary line.
std::string summaryStart(const char *command, const Row &row) {
  return std::string(command) + " " + row.value("volume", std::string()) + " <- " +
         row.value("document", std::string()) + ": ";
}

std::string planSummaryText(const Row &row) {
  return summaryStart("plan", row) + count(row, "add", "to add") + ", " +
         count(row, "change", "to change") + ", " + count(row, "inPlace", "in place") + ", " +
         count(row, "skipped", "skipped") + ", " + count(row, "refused", "never sent") + " (" +
         count(row, "flagged", "may be refused") + "); " +
         count(row, "extra", "on the volume only") + " (" + count(row, "remove", "to remove") + ")";
}

std::string applySummaryText(const Row &row) {
  std::string text = summaryStart("apply", row) + count(row, "applied", "applied") + ", " +
                     count(row, "inPlace", "in place") + ", " + count(row, "refused", "refused") +
                     ", " + count(row, "skipped", "skipped") + ", " +
                     count(row, "removed", "removed");
  if (row.contains("interrupted"))
    text += "; interrupted by " + row["interrupted"].get<std::string>();
  return text;
}

std::string verifySummaryText(const Row &row) {
  return summaryStart("verify", row) + count(row, "inPlace", "in place") + ", " +
         count(row, "missing", "missing") + ", " + count(row, "different", "different") + ", " +
         count(row, "skipped", "skipped");
}

}  // namespace

Row entryRow(const char *type, const char *action, const Entry &entry) {
  Row row;
  row["type"] = type;
  row["action"] = action;
  if (entry.at.line != 0) row["line"] = entry.at.line;
  row["kind"] = kindName(entry.kind);
  row["path"] = pathOf(entry);
  row["user"] = userOf(entry);
  row["value"] = entryValue(entry);
  return row;
}

Row summaryRow(const char *type, const std::string &volume, const std::string &document,
               SummaryCounts counts) {
  Row row;
  row["type"] = type;
  row["volume"] = volume;
  row["document"] = document;
  for (const auto &[name, value] : counts)
    row[name] = value;
  return row;
}

std::string renderAccountText(const Row &row) {
  const std::string type = row.value("type", std::string());
  if (type == "plan") return planText(row);
  if (type == "apply" || type == "verify") return outcomeText(row);
  if (type == "plan-summary") return planSummaryText(row);
  if (type == "apply-summary") return applySummaryText(row);
  if (type == "verify-summary") return verifySummaryText(row);
  return "";
}

// The same line as outcomeStart(line, action, kind, path, user, value) makes from the row's
// members, written straight into the line's room: it is made for every entry an apply sends.
void outcomeLine(std::string &line, const char *action, const Entry &entry) {
  const std::string_view kind = kindName(entry.kind);
  const bool quota = entry.kind == EntryKind::userQuota || entry.kind == EntryKind::dirQuota;
  const bool user = entry.kind == EntryKind::trustee || entry.kind == EntryKind::userQuota;
  // Room enough for every part; the line is cut to what was written.
  line.resize(std::strlen(action) + 10 + kind.size() + entry.path.size() + entry.id.size() +
              entry.name.size() + entry.amount.size() + 20);
  char *const start = line.data();
  char *at = start;
  const auto put = [&at](std::string_view text) {
    std::memcpy(at, text.data(), text.size());
    at += text.size();
  };
  put(action);
  while (at - start < 9)
    *at++ = ' ';
  *at++ = ' ';
  put(kind);
  if (entry.kind != EntryKind::userQuota && !entry.path.empty()) {
    *at++ = ' ';
    char *const path = at;
    put(entry.path);
    if (entry.kind == EntryKind::dirQuota) std::replace(path, at, '\\', '/');
  }
  if (user && !entry.ad && !entry.name.empty()) {
    *at++ = ' ';
    put(entry.name);
  } else if (user && entry.ad && entry.name.empty() && !entry.id.empty()) {
    *at++ = ' ';
    put(entry.id);
  } else if (user && entry.ad && !entry.name.empty()) {
    *at++ = ' ';
    put(entry.id);
    put(" (");
    put(entry.name);
    *at++ = ')';
  }
  if (quota && !entry.amount.empty()) {
    *at++ = ' ';
    put(entry.amount);
  } else if (!quota) {
    put(" [");
    for (std::size_t bit = 0; bit < std::size(kRights); ++bit)
      if ((entry.rights.set() & (1u << bit)) != 0) *at++ = kRights[bit].letter;
    *at++ = ']';
  }
  line.resize(static_cast<std::size_t>(at - start));
}
