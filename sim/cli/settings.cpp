// quillsim commands that set how the simulated server behaves: faults, fast mode, latency, and
// the RXL server's trustee file.
#include "cli.h"

#include "../core/faults.h"
#include "../core/latency.h"
#include "../core/rxl_db.h"
#include "../core/text.h"

#include <cstdio>
#include <unistd.h>

namespace qscli {

namespace {

// Rights of an RXL seed as the server's console writes them: upper-case letters of ACEFMRSW;
// "none" or "-" for none (made empty). A lower-case letter would be no right at all to a reader
// of the file, so it is refused rather than seeded as a trustee without rights.
bool rxlSeedRights(std::string &rights) {
  if (rights == "none" || rights == "-") {
    rights.clear();
    return true;
  }
  return !rights.empty() && rights.find_first_not_of("ACEFMRSW") == std::string::npos;
}

}  // namespace

int cmdFault(Args &a) {
  auto faults = qs::loadFaults(gRoot);
  const char *syntax =
      "fault refuse PATTERN VALUE DESCRIPTION [NAME] | fault no-marker [PATTERN] | "
      "fault no-result [PATTERN] | fault oversize BYTES [PATTERN] | "
      "fault read-error ERRNO [PATTERN] | fault write-error ERRNO [PATTERN] | "
      "fault rxlcon exit N|silent|signal SIG | fault list | fault clear";
  if (a.empty()) return usage(syntax);
  const std::string &k = a[0];
  if (k == "list") {
    for (const auto &f : faults)
      std::printf("%s\t%s\t%s\t%s\t%s\n", f.kind.c_str(), f.pattern.c_str(), f.value.c_str(),
                  f.description.c_str(), f.name.c_str());
    return 0;
  }
  if (k == "clear") {
    faults.clear();
  } else if (k == "refuse" && (a.size() == 4 || a.size() == 5)) {
    faults.push_back({k, a[1], a[2], a[3], a.size() == 5 ? a[4] : ""});
  } else if ((k == "no-marker" || k == "no-result") && a.size() <= 2) {
    faults.push_back({k, a.size() == 2 ? a[1] : "", "", "", ""});
  } else if (k == "oversize" && (a.size() == 2 || a.size() == 3) && qs::isDigits(a[1])) {
    faults.push_back({k, a.size() == 3 ? a[2] : "", a[1], "", ""});
  } else if ((k == "read-error" || k == "write-error") && (a.size() == 2 || a.size() == 3)) {
    if (!qs::parseErrno(a[1])) return fail("unknown errno: " + a[1]);
    faults.push_back({k, a.size() == 3 ? a[2] : "", a[1], "", ""});
  } else if (k == "rxlcon" && a.size() >= 2 &&
             ((a[1] == "silent" && a.size() == 2) ||
              ((a[1] == "exit" || a[1] == "signal") && a.size() == 3))) {
    std::erase_if(faults, [](const qs::Fault &f) { return f.kind == "rxlcon"; });
    faults.push_back({k, "", a[1], a.size() == 3 ? a[2] : "", ""});
  } else {
    return usage(syntax);
  }
  return qs::saveFaults(gRoot, faults) ? 0 : fail("cannot write the fault list");
}

int cmdFastmode(Args &a) {
  if (a.size() != 1 || (a[0] != "on" && a[0] != "off")) return usage("fastmode on|off");
  std::string f = gRoot + "/sim/fastmode";
  if (a[0] == "on") return qs::writeFileAtomic(f, "on\n") ? 0 : fail("cannot write " + f);
  ::unlink(f.c_str());
  return 0;
}

// latency [DURATION]: the wait before every reply, as a real server's round trip; alone, prints it.
int cmdLatency(Args &a) {
  const char *syntax = "latency [0|N{ns,us,ms,s}]";
  std::string f = gRoot + "/sim/latency";
  if (a.empty()) {
    std::printf("%s\n", qs::formatLatency(qs::loadLatency(gRoot)).c_str());
    return 0;
  }
  long long ns = 0;
  if (a.size() != 1) return usage(syntax);
  if (!qs::parseLatency(a[0], ns))
    return fail("bad latency: " + a[0] +
                " (0, or a whole number of ns, us, ms or s up to a minute)");
  if (ns == 0) {
    ::unlink(f.c_str());
    return 0;
  }
  return qs::writeFileAtomic(f, qs::formatLatency(ns) + "\n") ? 0 : fail("cannot write " + f);
}

// rxl trustee VOL PATH NAME RIGHTS [GUID] | rxl irm VOL PATH RIGHTS | rxl show VOL
int cmdRxl(Args &a) {
  const char *syntax = "rxl trustee VOL PATH NAME RIGHTS [GUID] | rxl irm VOL PATH RIGHTS | "
                       "rxl raw VOL FILE | rxl show VOL";
  if (a.size() < 2) return usage(syntax);
  auto vols = qs::loadVolumes(gRoot);
  const qs::VolumeInfo *v = findVolume(vols, a[1]);
  if (!v) return fail("no such volume: " + a[1]);
  std::string db = qs::rxlDbPath(v->mount);
  if (a[0] == "show" && a.size() == 2) {
    std::string text;
    if (!qs::readFile(db, text)) return fail("no RXL trustee file on " + a[1]);
    std::fwrite(text.data(), 1, text.size(), stdout);
    return 0;
  }
  if (a[0] == "raw" && a.size() == 3) {
    std::string text;
    if (!qs::readFile(a[2], text)) return fail("cannot read " + a[2]);
    qs::makeDirs(v->mount + "/._KESTREL");
    return qs::writeFileAtomic(db, text) ? 0 : fail("cannot write " + db);
  }
  auto entries = qs::loadRxlDb(db);
  qs::RxlEntry e;
  if (a[0] == "trustee" && (a.size() == 5 || a.size() == 6)) {
    e.path = a[2];
    e.name = a[3];
    e.rights = a[4];
    e.guid = a.size() == 6 ? a[5] : qs::guidOf(a[3]);
  } else if (a[0] == "irm" && a.size() == 4) {
    e.filter = true;
    e.path = a[2];
    e.rights = a[3];
  } else {
    return usage(syntax);
  }
  if (!rxlSeedRights(e.rights))
    return fail("bad RXL rights: " + e.rights +
                " (the server's console writes upper-case letters of ACEFMRSW, or none)");
  qs::setRxlEntry(entries, e);
  return qs::saveRxlDb(db, entries) ? 0 : fail("cannot write " + db);
}

}  // namespace qscli
