#include "ctl/commands.h"

namespace {

constexpr Command kCommands[] = {
    {"check", "DOC [-m MASK] [-u TYPE] [-t TREE] [-f FILTER] [-k] [-n] [--json]",
     "report everything wrong with a Metadata document before trovan restore applies it",
     defineCheck},
    {"report",
     "DOC [--by VIEW] [--effective PATH|--effective-all] [--path PREFIX] [--user NAME] "
     "[--rights LETTERS] [--kind KIND] [--format FORMAT|--html FILE]",
     "who has access to what: assignments, quotas and effective rights, by path or by user",
     defineReport},
};

}  // namespace

std::span<const Command> commands() { return kCommands; }
