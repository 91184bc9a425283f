// The info files of a volume, generated from its state in the file system's form.
#include "state.h"

#include "text.h"

#include <algorithm>
#include <unistd.h>

namespace qs {

namespace {
constexpr std::string_view kReplyHead =
    "<quillReply>\n<result value=\"0\"><description>success</description></result>\n";
constexpr std::string_view kReplyTail = "</quillReply>\n";

void appendCdata(std::string &out, std::string_view text) {
  out += "<![CDATA[";
  size_t pos;
  while ((pos = text.find("]]>")) != std::string_view::npos) {
    out += text.substr(0, pos + 2);
    out += "]]><![CDATA[";
    text = text.substr(pos + 2);
  }
  out += text;
  out += "]]>";
}
}  // namespace

std::string Volume::trusteeInfo() const {
  std::vector<const FileEntry *> order;
  order.reserve(files.size());
  for (const FileEntry &e : files)
    if (!e.trustees.empty() || e.irf >= 0) order.push_back(&e);
  if (!std::is_sorted(order.begin(), order.end(),
                      [](const FileEntry *a, const FileEntry *b) { return a->path < b->path; }))
    std::sort(order.begin(), order.end(),
              [](const FileEntry *a, const FileEntry *b) { return a->path < b->path; });
  std::string out(kReplyHead);
  out.reserve(order.size() * 200 + 64);
  out += "<trusteeInfo>\n";
  for (const FileEntry *e : order) {
    out += "<file><zid>";
    out += std::to_string(zidOf(e->path));
    out += "</zid><path>";
    appendCdata(out, e->path);
    out += "</path>\n";
    for (const Trustee &t : e->trustees) {
      out += t.ad ? "<trustee type=\"adID\"><name>" : "<trustee><name>";
      out += xmlEncode(t.name);
      out += "</name><id>";
      out += xmlEncode(t.id);
      out += "</id><rights value=\"";
      out += rightsToLetters(t.rights);
      out += "\">";
      out += rightsToElements(t.rights);
      out += "</rights></trustee>\n";
    }
    if (e->irf >= 0) {
      Rights r = static_cast<Rights>(e->irf);
      out += "<inheritedRightsFilter value=\"";
      out += rightsToLetters(r);
      out += "\">";
      out += rightsToElements(r);
      out += "</inheritedRightsFilter>\n";
    }
    out += "</file>\n";
  }
  out += "</trusteeInfo>\n";
  out += kReplyTail;
  return out;
}

std::string Volume::userInfo() const {
  std::string out(kReplyHead);
  out += "<userInfo>\n";
  for (const UserQuota &q : users) {
    out += q.ad ? "<user type=\"adID\"><id>" : "<user><id>";
    out += xmlEncode(q.id);
    out += "</id><spaceUsed>";
    out += q.used.empty() ? "0" : q.used;
    out += "</spaceUsed><quotaAmount>";
    out += q.amount;
    out += "</quotaAmount><name>";
    out += xmlEncode(q.name);
    out += "</name></user>\n";
  }
  out += "</userInfo>\n";
  out += kReplyTail;
  return out;
}

std::string Volume::dirInfo() const {
  std::string out(kReplyHead);
  out += "<dirInfo>\n";
  for (const DirQuota &q : dirs) {
    std::string back = q.path;
    std::replace(back.begin(), back.end(), '/', '\\');
    out += "<directory><zid>";
    out += std::to_string(zidOf(q.path));
    out += "</zid><path>";
    out += xmlEncode(back);
    out += "</path><spaceUsed>";
    out += q.used.empty() ? "0" : q.used;
    out += "</spaceUsed><quotaAmount>";
    out += q.amount;
    out += "</quotaAmount></directory>\n";
  }
  out += "</dirInfo>\n";
  out += kReplyTail;
  return out;
}

void invalidateInfo(const std::string &root, std::string_view volume) {
  std::string dir = infoDir(root, volume);
  for (const char *f : {"/TrusteeInfo.xml", "/UserInfo.xml", "/DirInfo.xml"})
    ::unlink((dir + f).c_str());
}

void ensureInfoFile(const std::string &root, const Volume &v, std::string_view file) {
  std::string path = infoDir(root, v.name) + "/" + std::string(file);
  if (::access(path.c_str(), F_OK) == 0) return;
  if (file == "TrusteeInfo.xml")
    writeFileAtomic(path, v.trusteeInfo());
  else if (file == "UserInfo.xml")
    writeFileAtomic(path, v.userInfo());
  else if (file == "DirInfo.xml")
    writeFileAtomic(path, v.dirInfo());
}

}  // namespace qs
