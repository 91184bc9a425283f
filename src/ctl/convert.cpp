// trovanctl convert -t TREE [-r PREFIX] [REPORT]: a legacy TRUSTEE.KXM report to a canonical,
// correctly escaped Metadata document holding the entries trovan restore -w would convert, in
// its order, read by trovan's own line and field code. --raw writes instead the very document
// trovan restore -w makes, by trovan's own conversion.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "ctl/commands.h"
#include "ctl/convert_pass.h"
#include "ctl/document_output.h"
#include "ctl/output.h"
#include "ctl/prepared_report.h"
#include "ctl/scratch_file.h"
#include "legacy/report_line.h"
#include "legacy/trustee_report.h"
#include "model/canonical_writer.h"

namespace {

struct ConvertOptions {
  std::string report = "-";
  std::string tree;
  std::string prefix;
  bool prefixGiven = false;
  bool raw = false;
  std::string output;
};

bool copyAll(int from, int to) {
  char buffer[65536];
  for (;;) {
    const ssize_t count = read(from, buffer, sizeof buffer);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return count == 0;
    for (ssize_t done = 0; done < count;) {
      const ssize_t written = write(to, buffer + done, static_cast<std::size_t>(count - done));
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) return false;
      done += written;
    }
  }
}

// trovan's own conversion of the prepared report (on descriptor 0) into a temporary document,
// copied to `out`. Its messages are those the first pass has already given in trovanctl's
// shape, so they are not shown twice.
bool writeRaw(const ConvertOptions &options, int out) {
  std::string name;
  const int fd = namedScratchFile(name);
  if (fd < 0) return false;
  lseek(0, 0, SEEK_SET);
  resetReportInput();
  std::fflush(stderr);
  const int savedError = dup(2);
  const int null = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (null >= 0) dup2(null, 2);
  const int code = convertTrusteeReport(options.tree.c_str(), name.c_str(),
                                        options.prefixGiven ? options.prefix.c_str() : nullptr);
  if (savedError >= 0) dup2(savedError, 2), close(savedError);
  if (null >= 0) close(null);
  const bool copied = code == 0 && copyAll(fd, out);
  close(fd);
  unlink(name.c_str());
  return copied;
}

int runConvert(const ConvertOptions &options) {
  const std::string label = options.report == "-" ? "(standard input)" : options.report;
  int input = 0;
  if (options.report != "-" && (input = open(options.report.c_str(), O_RDONLY | O_CLOEXEC)) < 0) {
    reportError(label + ": " + std::strerror(errno));
    return kTrouble;
  }
  std::string problem;
  const int prepared = prepareReport(input, problem);
  if (input != 0) close(input);
  if (prepared < 0) {
    reportError(label + ": " + problem);
    return kTrouble;
  }
  // trovan's report reader reads descriptor 0.
  dup2(prepared, 0);
  close(prepared);
  DocumentOutput output;
  if (!output.open(options.output)) return kTrouble;
  const int out = output.fd();
  ConvertSettings settings{label, options.tree,
                           options.prefixGiven ? options.prefix.c_str() : nullptr};
  CanonicalWriter writer(out);
  const ConvertResult result = convertReport(settings, options.raw ? nullptr : &writer);
  if (result.trouble) return kTrouble;
  const int error = options.raw ? (writeRaw(options, out) ? 0
                                   : errno != 0           ? errno
                                                          : EIO)
                                : writer.finish();
  if (!output.finish(error)) return kTrouble;
  return result.listed == 0 ? kClean : kFindings;
}

}  // namespace

CommandRun defineConvert(CLI::App &command) {
  auto options = std::make_shared<ConvertOptions>();
  command.add_option("REPORT", options->report, "the TRUSTEE.KXM report (default: standard input)")
      ->type_name("");
  command.add_option("-t,--tree", options->tree, "the Arbor tree name appended to user names")
      ->required()
      ->type_name("TREE");
  command.add_option("-r,--relative", options->prefix, "the path prefix of paths without a volume")
      ->type_name("PREFIX")
      ->each([options](const std::string &) { options->prefixGiven = true; });
  command.add_flag("--raw", options->raw,
                   "write exactly the document trovan restore -w makes (not escaped)");
  command.add_option("-o,--output", options->output, "write to FILE (replaced only on success)")
      ->type_name("FILE");
  return [options]() { return runConvert(*options); };
}
