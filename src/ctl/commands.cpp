#include "ctl/commands.h"

namespace {

constexpr Command kCommands[] = {
    {"check", "DOC [-m MASK] [-u TYPE] [-t TREE] [-f FILTER] [-k] [-n] [--json]",
     "report everything wrong with a Metadata document before trovan restore applies it",
     defineCheck},
};

}  // namespace

std::span<const Command> commands() { return kCommands; }
