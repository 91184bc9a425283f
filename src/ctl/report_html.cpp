#include "ctl/report_html.h"

#include <charconv>

#include "ctl/report_html_page.h"
#include "ctl/report_lines.h"

namespace {

void appendString(std::string &out, std::string_view text) {
  static constexpr char kHex[] = "0123456789abcdef";
  out += '"';
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte == '"' || byte == '\\') {
      out += '\\';
      out += char(byte);
    } else if (byte < 0x20 || byte == '<' || byte == '>' || byte == '&') {
      out += "\\u00";
      out += kHex[byte >> 4];
      out += kHex[byte & 15];
    } else if (byte == 0xe2 && at + 2 < text.size() && text[at + 1] == '\x80' &&
               (text[at + 2] == '\xa8' || text[at + 2] == '\xa9')) {
      out += text[at + 2] == '\xa8' ? "\\u2028" : "\\u2029";
      at += 2;
    } else {
      out += char(byte);
    }
  }
  out += '"';
}

void appendNumber(std::string &out, std::uint64_t number) {
  char digits[24];
  const auto done = std::to_chars(digits, digits + sizeof digits, number);
  out.append(digits, done.ptr);
}

// The last component of a node's path: its name in the tree ("/" for the root).
std::string_view nameOf(const PathNode &node) {
  return node.path == "/" ? node.path : node.path.substr(node.path.rfind('/') + 1);
}

void appendUsers(const ReportVolume &volume, std::string &out) {
  out += "\"users\":[";
  for (std::size_t at = 0; at < volume.users.size(); ++at) {
    const ReportUser &user = volume.users[at];
    if (at > 0) out += ',';
    out += '[';
    appendString(out, user.name);
    out += ',';
    appendString(out, user.id);
    out += user.ad ? ",1," : ",0,";
    if (user.hasQuota)
      appendString(out, user.quota);
    else
      out += "null";
    out += ']';
  }
  out += "]";
}

}  // namespace

void appendPageData(const ReportVolume &volume, std::string &out) {
  // A few long arrays and no object a node, so that the page parses little: every node's name
  // in one string, joined by '/' (which no name holds; the root's is empty); each node's
  // distance back to its parent (0 for the root); the number of trustees a node and all the
  // trustees in one list of user and rights; filters and directory quotas as pairs of a node
  // and its value. Rights are numbers, one bit a right in the order of the rights table.
  out += '{';
  appendUsers(volume, out);
  std::string parents = ",\"parents\":[", counts = ",\"counts\":[", trustees = ",\"trustees\":[";
  std::string filters = ",\"filters\":[", quotas = ",\"quotas\":[", names;
  for (std::uint32_t at = 0; at < volume.nodes.size(); ++at) {
    const PathNode &node = volume.nodes[at];
    const char *comma = at > 0 ? "," : "";
    if (at > 0) names += '/';
    if (at > 0) names += nameOf(node);
    parents += comma;
    appendNumber(parents, node.parent == kNone ? 0 : at - node.parent);
    counts += comma;
    appendNumber(counts, node.trusteesEnd - node.trusteesBegin);
    for (const Assignment &own : volume.trusteesOf(node)) {
      if (trustees.back() != '[') trustees += ',';
      appendNumber(trustees, own.user);
      trustees += ',';
      appendNumber(trustees, own.rights);
    }
    if (node.hasFilter) {
      if (filters.back() != '[') filters += ',';
      appendNumber(filters, at);
      filters += ',';
      appendNumber(filters, node.filter);
    }
    if (node.hasDirQuota) {
      if (quotas.back() != '[') quotas += ',';
      appendNumber(quotas, at);
      quotas += ',';
      appendString(quotas, node.dirQuota);
    }
  }
  out += ",\"names\":";
  appendString(out, names);
  for (const std::string *part : {&parents, &counts, &trustees, &filters, &quotas}) {
    out += *part;
    out += ']';
  }
  out += '}';
}

std::string htmlPage(const ReportVolume &volume, const std::string &title) {
  std::string page = kPageHead;
  std::string titleData;
  appendString(titleData, title);
  page += "<script id=\"data\" type=\"application/json\">";
  appendPageData(volume, page);
  page += "</script>\n<script>const TITLE = ";
  page += titleData;
  page += ";\nconst NOTE = ";
  appendString(page, kEffectiveNote);
  page += ";\n";
  page += kPageScript;
  page += "</script>\n</body>\n</html>\n";
  return page;
}
