#include "ctl/program.h"

#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "ctl/commands.h"
#include "ctl/output.h"

namespace {

constexpr char kVersionText[] =
    "trovanctl (QUILL) " TROVAN_VERSION "\n"
    "Copyright (C) 2026 the trovan developers. Free software under the MIT License.\n";

// CLI11's help layout, with the usage lines taken from the command table.
class HelpFormatter : public CLI::Formatter {
public:
  std::string make_usage(const CLI::App *app, std::string) const override {
    if (app->get_parent() == nullptr) return "Usage: trovanctl COMMAND [options] [operands]\n";
    for (const Command &command : commands())
      if (app->get_name() == command.name)
        return std::string("Usage: trovanctl ") + command.name + " " + command.usage + "\n";
    return "Usage: trovanctl " + app->get_name() + "\n";
  }

  std::string make_subcommands(const CLI::App *app, CLI::AppFormatMode) const override {
    if (app->get_parent() != nullptr) return "";
    std::string text = "\nCommands:\n";
    for (const Command &command : commands())
      text += std::string("  ") + command.name + " " + command.usage + "\n      " +
              command.summary + "\n";
    return text;
  }
};

constexpr char kFooter[] =
    "\nExit status: 0 clean, 1 findings or differences, 2 usage or fatal error.\n"
    "Run 'trovanctl COMMAND --help' for a command's options; see trovanctl(8).";

// A usage error in the GNU shape, pointing at the help of the command that was being parsed.
int usageError(const CLI::App &program, const CLI::ParseError &error) {
  std::string help = "trovanctl --help";
  for (const CLI::App *command : program.get_subcommands())
    help = "trovanctl " + command->get_name() + " --help";
  reportError(error.what());
  std::fprintf(stderr, "Try '%s' for more information.\n", help.c_str());
  return kTrouble;
}

bool isCommand(std::string_view name) {
  for (const Command &command : commands())
    if (name == command.name) return true;
  return false;
}

}  // namespace

int runTrovanctl(int argc, char **argv) {
  CLI::App program("trovanctl: check, compare, convert, map and report on Metadata documents, "
                   "and plan, apply and verify their restore to a volume.",
                   "trovanctl");
  program.formatter(std::make_shared<HelpFormatter>());
  program.set_version_flag("--version", std::string(kVersionText), "show the version and exit");
  program.require_subcommand(1);
  std::vector<CommandRun> runs;
  for (const Command &command : commands()) {
    CLI::App *sub = program.add_subcommand(command.name, command.summary);
    sub->formatter(program.get_formatter());
    sub->footer("\nSee trovanctl(8).");
    runs.push_back(command.define(*sub));
  }
  program.footer(kFooter);
  // A first operand that names no command.
  if (argc >= 2 && argv[1][0] != '-' && !isCommand(argv[1])) {
    reportError(std::string("unknown command '") + argv[1] + "'");
    std::fputs("Try 'trovanctl --help' for more information.\n", stderr);
    return kTrouble;
  }
  try {
    program.parse(argc, argv);
  } catch (const CLI::CallForHelp &help) {
    return program.exit(help, std::cout, std::cerr);
  } catch (const CLI::CallForAllHelp &help) {
    return program.exit(help, std::cout, std::cerr);
  } catch (const CLI::CallForVersion &) {
    std::fputs(kVersionText, stdout);
    return kClean;
  } catch (const CLI::ParseError &error) {
    return usageError(program, error);
  }
  for (std::size_t at = 0; at < commands().size(); ++at)
    if (program.got_subcommand(commands()[at].name)) return runs[at]();
  return kTrouble;
}
