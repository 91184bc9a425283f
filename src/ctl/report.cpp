// trovanctl report DOC: who has access to what, as assigned and as effective rights, by path or
// by user, as text, CSV, JSON Lines or a self-contained HTML page.
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>

#include "ctl/commands.h"
#include "ctl/document_operand.h"
#include "ctl/output.h"
#include "ctl/output_file.h"
#include "ctl/report_html.h"
#include "ctl/report_options.h"

namespace {

// Reads the document named by the operand: a file, "-" for standard input, or vol:NAME for the
// live volume. False after a message.
bool readVolume(const std::string &name, ReportVolume &volume) {
  DocumentOperand operand;
  if (!operand.open(name)) return false;
  const std::string problem = collectVolume(operand.fd(), operand.label(), volume);
  if (!problem.empty()) reportError(problem);
  return problem.empty();
}

int writeHtml(const std::string &name, const ReportVolume &volume, const std::string &title) {
  OutputFile file(name);
  if (!file.ok()) {
    reportError(file.error());
    return kTrouble;
  }
  const std::string page = htmlPage(volume, title);
  for (std::size_t done = 0; done < page.size();) {
    const ssize_t wrote = write(file.fd(), page.data() + done, page.size() - done);
    if (wrote < 0 && errno == EINTR) continue;
    if (wrote < 0) {
      reportError(name + ": " + std::strerror(errno));
      return kTrouble;
    }
    done += std::size_t(wrote);
  }
  if (const int error = file.commit(); error != 0) {
    reportError(name + ": " + std::strerror(error));
    return kTrouble;
  }
  return kClean;
}

int runReport(const ReportOptions &options) {
  ReportPlan plan;
  if (const std::string problem = resolveReportOptions(options, plan); !problem.empty()) {
    reportError("report: " + problem);
    return kTrouble;
  }
  ReportVolume volume;
  if (!readVolume(options.document, volume)) return kTrouble;
  if (!options.html.empty()) return writeHtml(options.html, volume, options.document);
  std::unique_ptr<LineWriter> writer;
  if (options.format == "csv") writer = makeCsvWriter(volume, stdout);
  if (options.format == "json") writer = makeJsonWriter(volume, plan.view, stdout);
  if (options.format == "text") writer = makeTextWriter(volume, plan.view, stdout);
  if (plan.view == ReportView::effective || plan.view == ReportView::effectiveAll)
    if (options.format == "csv") reportError(kEffectiveNote);
  writeView(volume, plan.view, options.effectivePath, plan.filter, *writer);
  if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
    reportError(std::string("standard output: ") + std::strerror(errno));
    return kTrouble;
  }
  return kClean;
}

}  // namespace

CommandRun defineReport(CLI::App &command) {
  auto options = std::make_shared<ReportOptions>();
  command.add_option("DOC", options->document, "the Metadata document (- for standard input)")
      ->required()
      ->type_name("");
  command.add_option("--by", options->by, "the view: path (default) or user")->type_name("VIEW");
  command.add_option("--format", options->format, "text (default), csv or json")
      ->type_name("FORMAT")
      ->each([options](const std::string &) { options->formatGiven = true; });
  command.add_option("--path", options->path, "only PREFIX and the paths below it")
      ->type_name("PREFIX")
      ->each([options](const std::string &) { options->pathGiven = true; });
  command.add_option("--user", options->user, "only this user (Arbor name or AD SID)")
      ->type_name("NAME")
      ->each([options](const std::string &) { options->userGiven = true; });
  command.add_option("--rights", options->rights, "only holders of at least these rights")
      ->type_name("LETTERS")
      ->each([options](const std::string &) { options->rightsGiven = true; });
  command
      .add_option("--kind", options->kind,
                  "only arbor or ad users, or lines of one entry kind (trustee, filter, "
                  "user-quota, dir-quota)")
      ->type_name("KIND");
  command.add_option("--effective", options->effectivePath, "every trustee's rights at PATH")
      ->type_name("PATH")
      ->each([options](const std::string &) { options->effectiveGiven = true; });
  command.add_flag("--effective-all", options->effectiveAll,
                   "effective rights at every path that has an entry");
  command.add_option("--html", options->html, "write a self-contained page to FILE")
      ->type_name("FILE");
  return [options]() { return runReport(*options); };
}
