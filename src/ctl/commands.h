// The table of trovanctl's commands, each with its usage beside it. A command defines its options
// on its own CLI11 subcommand and returns what runs it once the command line has been parsed.
#pragma once
#include <functional>
#include <span>

#include <CLI/CLI.hpp>

using CommandRun = std::function<int()>;

struct Command {
  const char *name;
  const char *usage;    // what follows "trovanctl NAME" in a usage line
  const char *summary;  // one line for the program's help
  CommandRun (*define)(CLI::App &command);
};

std::span<const Command> commands();

// The exit statuses, as diff(1) and cmp(1) have them.
inline constexpr int kClean = 0;     // no findings, no differences
inline constexpr int kFindings = 1;  // findings or differences
inline constexpr int kTrouble = 2;   // a usage error or a fatal one

// Each command's definition, in its own source file.
CommandRun defineCheck(CLI::App &command);
CommandRun defineDiff(CLI::App &command);
CommandRun defineConvert(CLI::App &command);
CommandRun defineMap(CLI::App &command);
CommandRun defineReport(CLI::App &command);
CommandRun definePlan(CLI::App &command);
CommandRun defineApply(CLI::App &command);
CommandRun defineVerify(CLI::App &command);
