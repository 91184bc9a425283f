// check_requests [-k] [-m MASK] [-u TYPE] [-t TREE] [-f FILTER] [--volume NAME]
//                [--mount-point DIR] DOC...
// Prints the requests that `trovanctl check` computes trovan restore would send for each
// document (trovan's own walkers run against the request stand-in, as check runs them), one a
// line in the simulator's request log form: exact bytes, a request holding a line feed written
// with "\n" and "\\" escapes. Status 0, or 2 when a document cannot be checked.
#include <getopt.h>

#include <cstdio>
#include <string>
#include <string_view>

#include "ctl/check_settings.h"
#include "ctl/document_source.h"
#include "ctl/restore_run.h"

namespace {

class LogLines : public RequestSink {
public:
  void request(std::string_view bytes, RestorePlace) override {
    std::string line(bytes);
    if (line.find('\n') != std::string::npos) {
      line.clear();
      for (const char c : bytes)
        line += c == '\n'   ? std::string("\\n")
                : c == '\\' ? std::string("\\\\")
                            : std::string(1, c);
    }
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stdout);
  }
};

bool readOptions(int argc, char **argv, CheckOptions &options) {
  static const option kLong[] = {{"volume", required_argument, nullptr, 'V'},
                                 {"mount-point", required_argument, nullptr, 'M'},
                                 {nullptr, 0, nullptr, 0}};
  for (int letter; (letter = getopt_long(argc, argv, "km:u:t:f:", kLong, nullptr)) != -1;) {
    switch (letter) {
    case 'k': options.noGemel = true; break;
    case 'm': options.mask = optarg; break;
    case 'u': options.userType = optarg; break;
    case 't': options.tree = optarg, options.treeGiven = true; break;
    case 'f': options.filter = optarg, options.filterGiven = true; break;
    case 'V': options.volume = optarg; break;
    case 'M': options.mountPoint = optarg; break;
    default: return false;
    }
  }
  return optind < argc;
}

}  // namespace

int main(int argc, char **argv) {
  CheckOptions options;
  if (!readOptions(argc, argv, options)) {
    std::fputs("usage: check_requests [check's restore options] DOC...\n", stderr);
    return 2;
  }
  RestoreSettings settings;
  if (const std::string problem = resolveCheckOptions(options, settings); !problem.empty()) {
    std::fprintf(stderr, "check_requests: %s\n", problem.c_str());
    return 2;
  }
  LogLines lines;
  for (int at = optind; at < argc; ++at) {
    DocumentSource source(argv[at]);
    const int fd = source.ok() ? source.second() : -1;
    const RestoreOutcome outcome =
        fd < 0 ? RestoreOutcome{} : runRestore(fd, options, settings, lines);
    if (fd < 0 || !outcome.failure.empty()) {
      std::fprintf(stderr, "check_requests: %s: cannot run trovan's restore\n", argv[at]);
      return 2;
    }
  }
  return 0;
}
