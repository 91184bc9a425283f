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
     "[--drop-unmapped] [--repair-end-tags] [-o FILE]",
     "a new canonical document from an old one: users, tree and paths rewritten", defineMap},
    {"report",
     "DOC [--by VIEW] [--effective PATH|--effective-all] [--path PREFIX] [--user NAME] "
     "[--rights LETTERS] [--kind KIND] [--format FORMAT|--html FILE]",
     "who has access to what: assignments, quotas and effective rights, by path or by user",
     defineReport},
    {"plan",
     "VOL DOC [-m MASK] [-u TYPE] [-t TREE] [-f FILTER] [-k] [--prune] [--out FILE] [--json]",
     "show what a restore of a document would change on a volume, entry by entry", definePlan},
    {"apply", "VOL DOC [restore options] [--prune] [--force] [--rejects FILE] [--no-wait] [--json]",
     "send a volume only the changes a document asks for, with an account of every entry",
     defineApply},
    {"verify", "VOL DOC [-m MASK] [-u TYPE] [-t TREE] [-f FILTER] [--remaining FILE] [--json]",
     "tell whether every entry of a document is in place on a volume", defineVerify},
};

}  // namespace

std::span<const Command> commands() { return kCommands; }
