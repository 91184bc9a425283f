// Replays the info files of one volume as requests on another, the way a restore does, and
// checks that the second volume's info files come out the same: replay VOL TWIN.
// Runs under the simulator; prints "identical" or both texts.
#include <cstdio>
#include <fcntl.h>
#include <mntent.h>
#include <regex>
#include <string>
#include <unistd.h>

namespace {

const std::string kFile = "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>";
const std::string kVol = "<virtualIO><datastream name=\"command\"/></virtualIO><quillRequest>";
const std::string kNoQuota = "9223372036854775807";
int refused = 0;

std::string slurp(const std::string &path) {
  std::string out;
  int fd = open(path.c_str(), O_RDONLY);
  if (fd < 0) return out;
  char buf[65536];
  ssize_t n;
  while ((n = read(fd, buf, sizeof buf)) > 0)
    out.append(buf, static_cast<size_t>(n));
  close(fd);
  return out;
}

// The sections of a volume's info files with the reply wrapper taken off.
std::string sections(const std::string &vol) {
  std::string out;
  for (const char *f : {"TrusteeInfo.xml", "UserInfo.xml", "DirInfo.xml"}) {
    std::string t = slurp("/_admin/Manage_QUILL/Volume/" + vol + "/" + f);
    for (const char *w : {"<quillReply>", "</quillReply>"}) {
      size_t p = t.find(w);
      if (p != std::string::npos) t.erase(p, std::string(w).size() + 1);
    }
    size_t a = t.find("<result value="), b = t.find("</result>", a);
    if (a != std::string::npos && b != std::string::npos) t.erase(a, b + 10 - a);
    out += t;
  }
  return out;
}

std::string mountOf(const std::string &vol) {
  FILE *m = setmntent("/etc/mtab", "r");
  std::string dir;
  while (mntent *e = m ? getmntent(m) : nullptr)
    if (std::string(e->mnt_type) == "quillvol" && std::string(e->mnt_fsname) == vol)
      dir = e->mnt_dir;
  if (m) endmntent(m);
  return dir;
}

void send(int fd, const std::string &request) {
  lseek(fd, 0, SEEK_SET);
  if (write(fd, request.data(), request.size()) < 0) return;
  lseek(fd, 0, SEEK_SET);
  std::string reply;
  char buf[4096];
  ssize_t n;
  while ((n = read(fd, buf, sizeof buf)) > 0)
    reply.append(buf, static_cast<size_t>(n));
  if (reply.find("<result value=\"0\">") == std::string::npos) {
    std::printf("refused: %s\n  %s", request.c_str(), reply.c_str());
    refused++;
  }
}

void restore(const std::string &doc, const std::string &vol, const std::string &mount) {
  int fd = open("/_admin/Manage_QUILL/files.cmd", O_RDWR);
  std::regex file("<file>([\\s\\S]*?)</file>");
  std::regex path("<path><!\\[CDATA\\[([\\s\\S]*?)\\]\\]></path>");
  std::regex trustee("<trustee( type=\"adID\")?><name>(.*?)</name><id>(.*?)</id><rights[^>]*>(.*?)"
                     "</rights></trustee>");
  std::regex irf("<inheritedRightsFilter[^>]*>(.*?)</inheritedRightsFilter>");
  for (std::sregex_iterator f(doc.begin(), doc.end(), file), end; f != end; ++f) {
    std::string body = (*f)[1], full;
    std::smatch pm;
    if (std::regex_search(body, pm, path)) full = mount + pm[1].str();
    for (std::sregex_iterator t(body.begin(), body.end(), trustee); t != end; ++t) {
      bool ad = (*t)[1].matched;
      send(fd, kFile + "<trustees><addTrustee" +
                   (ad ? "type=\"adID\"><userID>" + (*t)[3].str() + "</userID>"
                       : "><name>" + (*t)[2].str() + "</name>")
                       .insert(0, ad ? " " : "") +
                   "<rights>" + (*t)[4].str() + "</rights><fileName>" + full +
                   "</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>");
    }
    std::smatch im;
    if (std::regex_search(body, im, irf))
      send(fd,
           kFile + "<trustees><modifyInheritedRightsFilter><inheritedRightsFilter>" + im[1].str() +
               "</inheritedRightsFilter><fileName>" + full +
               "</fileName><gemelPath/></modifyInheritedRightsFilter></trustees></fileRequest>");
  }
  std::regex dir("<directory>.*?<path>(.*?)</path>.*?<quotaAmount>(.*?)</quotaAmount></directory>");
  for (std::sregex_iterator d(doc.begin(), doc.end(), dir), end; d != end; ++d) {
    if ((*d)[2].str() == kNoQuota) continue;
    std::string name = mount + (*d)[1].str();
    for (char &c : name)
      c = c == '\\' ? '/' : c;
    send(fd, kFile + "<directoryQuota><addQuota><fileName>" + name +
                 "</fileName><gemelPath/><quotaAmount>" + (*d)[2].str() +
                 "</quotaAmount></addQuota></directoryQuota></fileRequest>");
  }
  close(fd);
  fd = open("/_admin/Manage_QUILL/manage.cmd", O_RDWR);
  std::regex user(
      "<user( type=\"adID\")?>.*?<quotaAmount>(.*?)</quotaAmount><name>(.*?)</name></user>");
  for (std::sregex_iterator u(doc.begin(), doc.end(), user), end; u != end; ++u) {
    if ((*u)[2].str() == kNoQuota) continue;
    send(fd, kVol + "<userSpaceRestrictions><set" + ((*u)[1].matched ? " type=\"adID\"" : "") +
                 "><volumeName>" + vol + "</volumeName><userName>" + (*u)[3].str() +
                 "</userName><quota>" + (*u)[2].str() +
                 "</quota><gemelPath/></set></userSpaceRestrictions></quillRequest>");
  }
  close(fd);
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: replay VOL TWIN\n");
    return 2;
  }
  std::string a = sections(argv[1]);
  restore(a, argv[2], mountOf(argv[2]));
  std::string b = sections(argv[2]);
  if (a == b && !refused) {
    std::printf("identical\n");
    return 0;
  }
  std::printf("--- %s\n%s--- %s\n%s", argv[1], a.c_str(), argv[2], b.c_str());
  return 1;
}
