#include "ctl/commands.h"

namespace {

constexpr Command kCommands[] = {
    {"check", "DOC [-m MASK] [-u TYPE] [-t TREE] [-f FILTER] [-k] [-n] [--json]",
     "report everything wrong with a Metadata document before trovan restore applies it",
     defineCheck},
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
