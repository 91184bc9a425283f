#include "ctl/commands.h"

namespace {

constexpr Command kCommands[] = {
    {"check", "DOC [-m MASK] [-u TYPE] [-t TREE] [-f FILTER] [-k] [-n] [--json]",
     "report everything wrong with a Metadata document before trovan restore applies it",
     defineCheck},
    {"diff", "OLD NEW [--path PREFIX] [--user USER] [--kind KIND] [--json]",
     "per-entry differences between two documents (or vol:NAME, a live volume)", defineDiff},
    {"convert", "-t TREE [-r PREFIX] [--raw] [-o FILE] [REPORT]",
     "a legacy TRUSTEE.KXM report to a canonical Metadata document", defineConvert},
    {"map",
     "DOC [-U FILE] [-t TREE] [-r OLD=NEW] [--path PREFIX] [--user USER] [--kind KIND] "
     "[--drop-unmapped] [-o FILE]",
     "a new canonical document from an old one: users, tree and paths rewritten", defineMap},
    {"report",
     "DOC [--by VIEW] [--effective PATH|--effective-all] [--path PREFIX] [--user NAME] "
     "[--rights LETTERS] [--kind KIND] [--format FORMAT|--html FILE]",
     "who has access to what: assignments, quotas and effective rights, by path or by user",
     defineReport},
};

}  // namespace

std::span<const Command> commands() { return kCommands; }
