#include "ctl/report_html.h"

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

// A node: [name, parent, [user, rights, ...], filter or null, directory quota or null].
void appendNode(std::string &out, const ReportVolume &volume, const PathNode &node) {
  const std::size_t slash = node.path.rfind('/');
  out += '[';
  appendString(out, node.path == "/" ? std::string_view("/") : node.path.substr(slash + 1));
  out += ',';
  out += node.parent == kNone ? std::string("-1") : std::to_string(node.parent);
  out += ",[";
  const std::span<const Assignment> trustees = volume.trusteesOf(node);
  for (std::size_t at = 0; at < trustees.size(); ++at) {
    if (at > 0) out += ',';
    out += std::to_string(trustees[at].user);
    out += ",\"" + rightsLetters(trustees[at].rights) + '"';
  }
  out += "],";
  out += node.hasFilter ? '"' + rightsLetters(node.filter) + '"' : std::string("null");
  out += ',';
  if (node.hasDirQuota)
    appendString(out, node.dirQuota);
  else
    out += "null";
  out += "]";
}

}  // namespace

void appendPageData(const ReportVolume &volume, std::string &out) {
  out += "{\"users\":[";
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
  out += "],\"nodes\":[";
  for (std::size_t at = 0; at < volume.nodes.size(); ++at) {
    if (at > 0) out += ",\n";
    appendNode(out, volume, volume.nodes[at]);
  }
  out += "]}";
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
