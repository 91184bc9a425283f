// Save benchmark helper.
//   save_bench gen DIR FILES       writes TrusteeInfo.xml, UserInfo.xml, DirInfo.xml for FILES
//                                  files into DIR (about 320 bytes of trustee text per file)
//   save_bench save DIR [PATH [arbor|ad]]
//                                  runs the save of those info files in process (mask ""),
//                                  writing the document to descriptor 1
//   save_bench filters FILE PATH   times the one-pass and the element-by-element filters
//                                  (-u arbor then -p PATH) on FILE and checks they agree
//   save_bench time COMMAND...     runs COMMAND (standard output to /dev/null) and prints
//                                  "wall user system peak-KiB" of that whole process, in seconds
//                                  to the microsecond
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "channel/admin_channel.h"
#include "document/run_settings.h"
#include "info_filters_oracle.h"
#include "save/info_filters.h"
#include "save/save_driver.h"

namespace {

int generate(const std::string &dir, long files) {
  const std::string wrapper =
      "<quillReply>\n<result value=\"0\"><description>success</description></result>\n";
  {
    std::ofstream out(dir + "/TrusteeInfo.xml", std::ios::binary);
    out << wrapper << "<trusteeInfo>\n";
    char line[1024];
    for (long i = 0; i < files; ++i) {
      std::snprintf(line, sizeof line,
                    "<file><zid>%ld</zid><path><![CDATA[/d%04ld/f%07ld]]></path>\n"
                    "<trustee><name>admin.corp.TREE.</name><id></id><rights value=\"RWF\">"
                    "<read/><write/><fileScan/></rights></trustee>\n",
                    100000000 + i, i / 1000, i);
      out << line;
      if (i % 2 == 0)
        out << "<trustee type=\"adID\"><name>gen.user</name><id>S-1-5-21-1000-2000-3000-1104"
               "</id><rights value=\"RF\"><read/><fileScan/></rights></trustee>\n";
      else
        out << "<trustee><name>backup.operators.corp.TREE.</name><id></id><rights value=\"RF\">"
               "<read/><fileScan/></rights></trustee>\n";
      if (i % 10 == 0)
        out << "<inheritedRightsFilter value=\"RF\"><read/><fileScan/></inheritedRightsFilter>\n";
      out << "</file>\n";
    }
    out << "</trusteeInfo>\n</quillReply>\n";
  }
  {
    std::ofstream out(dir + "/UserInfo.xml", std::ios::binary);
    out << wrapper << "<userInfo>\n";
    for (long i = 0; i < files / 100; ++i)
      out << "<user><id></id><spaceUsed>0</spaceUsed><quotaAmount>" << 1000 + i
          << "</quotaAmount><name>u" << i << ".corp.TREE.</name></user>\n";
    out << "</userInfo>\n</quillReply>\n";
  }
  {
    std::ofstream out(dir + "/DirInfo.xml", std::ios::binary);
    out << wrapper << "<dirInfo>\n";
    for (long i = 0; i < files / 1000; ++i)
      out << "<directory><zid>" << i << "</zid><path>\\d" << i
          << "</path><spaceUsed>0</spaceUsed><quotaAmount>77</quotaAmount></directory>\n";
    out << "</dirInfo>\n</quillReply>\n";
  }
  return 0;
}

int save(const std::string &dir, const char *path, const char *userType) {
  if (userType != nullptr) {
    arborUsers = std::strcmp(userType, "arbor") == 0;
    adUsers = std::strcmp(userType, "ad") == 0;
  }
  std::vector<char> pathCopy;
  if (path != nullptr) pathCopy.assign(path, path + std::strlen(path) + 1);
  const std::string infoDir = dir + "/";
  return saveMetadata("VOL", infoDir.c_str(), "", nullptr, path ? pathCopy.data() : nullptr);
}

double seconds(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

int filters(const char *file, const char *path) {
  std::ifstream in(file, std::ios::binary);
  std::stringstream bytes;
  bytes << in.rdbuf();
  const std::string text = bytes.str();
  auto run = [&](bool fast, double *elapsed) {
    std::vector<char> buffer(text.begin(), text.end());
    buffer.push_back('\0');
    std::vector<char> scratch(text.size() + 2);
    int length = static_cast<int>(text.size());
    const auto start = std::chrono::steady_clock::now();
    stripReplyWrapper(buffer.data(), &length);
    if (fast) {
      removeElements(buffer.data(), &length, "trustee type=\"adID\"", "trustee");
      filterByPath(buffer.data(), &length, path, scratch.data(), "file");
    } else {
      oracle::removeElements(buffer.data(), &length, "trustee type=\"adID\"", "trustee");
      oracle::filterByPath(buffer.data(), &length, path, scratch.data(), "file");
    }
    *elapsed = seconds(start);
    return std::string(buffer.data());
  };
  double fastTime = 0;
  double slowTime = 0;
  const std::string fastOut = run(true, &fastTime);
  const std::string slowOut = run(false, &slowTime);
  std::printf("filters on %zu bytes: one pass %.3f s, element by element %.3f s (%.0fx), %s\n",
              text.size(), fastTime, slowTime, slowTime / fastTime,
              fastOut == slowOut ? "same output" : "OUTPUTS DIFFER");
  return fastOut == slowOut ? 0 : 1;
}

// Processor and wall time of one child process, from the kernel's own accounting of it.
int timeCommand(char **command) {
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = fork();
  if (child < 0) return 1;
  if (child == 0) {
    const int null = open("/dev/null", O_WRONLY);
    if (null < 0 || dup2(null, 1) < 0) _exit(127);
    execvp(command[0], command);
    _exit(127);
  }
  int status = 0;
  struct rusage usage;
  if (wait4(child, &status, 0, &usage) != child) return 1;
  const double wall = seconds(start);
  const auto toSeconds = [](const timeval &t) { return t.tv_sec + t.tv_usec / 1e6; };
  std::printf("%.6f %.6f %.6f %ld\n", wall, toSeconds(usage.ru_utime), toSeconds(usage.ru_stime),
              usage.ru_maxrss);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc >= 4 && std::strcmp(argv[1], "gen") == 0) return generate(argv[2], std::atol(argv[3]));
  if (argc >= 3 && std::strcmp(argv[1], "save") == 0) {
    if (!allocateReplyBuffer()) return 12;
    return save(argv[2], argc > 3 ? argv[3] : nullptr, argc > 4 ? argv[4] : nullptr);
  }
  if (argc >= 4 && std::strcmp(argv[1], "filters") == 0) return filters(argv[2], argv[3]);
  if (argc >= 3 && std::strcmp(argv[1], "time") == 0) return timeCommand(argv + 2);
  std::fprintf(stderr,
               "usage: save_bench gen DIR FILES | save DIR [PATH [arbor|ad]] | filters FILE PATH | "
               "time COMMAND...\n");
  return 2;
}
