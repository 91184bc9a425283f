#include "rxl_db.h"

#include "text.h"

#include <cstdio>

namespace qs {

namespace {

std::string between(const std::string &text, size_t &pos, const std::string &open,
                    const std::string &close, size_t limit) {
  size_t a = text.find(open, pos);
  if (a == std::string::npos || a > limit) return {};
  a += open.size();
  size_t b = text.find(close, a);
  if (b == std::string::npos) return {};
  pos = b + close.size();
  return text.substr(a, b - a);
}

}  // namespace

std::string rxlDbPath(const std::string &mount) {
  return mount + "/._KESTREL/.trustee_database.xml";
}

std::vector<RxlEntry> loadRxlDb(const std::string &file) {
  std::vector<RxlEntry> out;
  std::string text;
  if (!readFile(file, text)) return out;
  size_t pos = 0;
  for (;;) {
    size_t t = text.find("<trustee path=\"", pos);
    size_t m = text.find("<inherited_rights_mask path=\"", pos);
    if (t == std::string::npos && m == std::string::npos) break;
    RxlEntry e;
    e.filter = m < t;
    size_t start = e.filter ? m : t;
    std::string endTag = e.filter ? "</inherited_rights_mask>" : "</trustee>";
    size_t end = text.find(endTag, start);
    if (end == std::string::npos) break;
    pos = start;
    e.path = between(text, pos, e.filter ? "<inherited_rights_mask path=\"" : "<trustee path=\"",
                     "\">", end);
    if (!e.filter) e.name = between(text, pos, "<name>", "</name>", end);
    e.rights = between(text, pos, "<rights>", "</rights>", end);
    if (!e.filter) e.guid = between(text, pos, "<object_guid>", "</object_guid>", end);
    out.push_back(std::move(e));
    pos = end + endTag.size();
  }
  return out;
}

bool saveRxlDb(const std::string &file, const std::vector<RxlEntry> &entries) {
  std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<volume_trustees>\n";
  for (const RxlEntry &e : entries) {
    if (e.filter) {
      out += "<inherited_rights_mask path=\"" + e.path + "\">\n<rights>" + e.rights +
             "</rights>\n</inherited_rights_mask>\n";
    } else {
      out += "<trustee path=\"" + e.path + "\">\n<name>" + e.name + "</name>\n<rights>" + e.rights +
             "</rights>\n<object_guid>" + e.guid + "</object_guid>\n</trustee>\n";
    }
  }
  out += "</volume_trustees>\n";
  size_t slash = file.rfind('/');
  if (slash != std::string::npos) makeDirs(file.substr(0, slash));
  return writeFileAtomic(file, out);
}

void setRxlEntry(std::vector<RxlEntry> &entries, const RxlEntry &e) {
  for (RxlEntry &old : entries) {
    if (old.filter == e.filter && old.path == e.path && (e.filter || old.name == e.name)) {
      old = e;
      return;
    }
  }
  entries.push_back(e);
}

std::string guidOf(const std::string &name) {
  uint32_t a = zidOf(name), b = zidOf(name + "#"), c = zidOf(name + "##"), d = zidOf(name + "#!");
  char buf[40];
  std::snprintf(buf, sizeof buf, "%08x-%04x-%04x-%04x-%04x%08x", a, b & 0xffff, b >> 16, c & 0xffff,
                c >> 16, d);
  return buf;
}

}  // namespace qs
