// Cost of the RXL trustee file import against two baselines measured in the same run, all with
// descriptor 1 on /dev/null: a plain copy of the same bytes (8,192-byte reads, each chunk written
// out), and the import's own system calls alone (the same reads plus one record-sized write per
// entry, which is what the output format requires).
// Usage: rxl_import_bench [ENTRIES]
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include "save/rxl_import.h"

namespace {

// An RXL trustee file of `entries` entries, one element a line; every `filterEvery`-th entry is
// a filter (0: none, so the scanner looks for a filter opening that never comes).
std::string makeFile(const char *dir, long entries, long filterEvery) {
  const std::string name = std::string(dir) + "/trustee_database.xml";
  FILE *out = std::fopen(name.c_str(), "w");
  if (out == nullptr) std::exit(1);
  std::fprintf(out, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<volume_trustees>\n");
  for (long i = 0; i < entries; ++i) {
    if (filterEvery > 0 && i % filterEvery == 0)
      std::fprintf(out,
                   "<inherited_rights_mask path=\"/d%04ld/f%07ld\">\n<rights>RF</rights>\n"
                   "</inherited_rights_mask>\n",
                   i / 1000, i);
    else
      std::fprintf(out,
                   "<trustee path=\"/d%04ld/f%07ld\">\n<name>user%ld.sales.corp</name>\n"
                   "<rights>RWCEMF</rights>\n"
                   "<object_guid>%08lx-0000-1111-2222-333344445555</object_guid>\n"
                   "</trustee>\n",
                   i / 1000, i, i % 977, i);
  }
  std::fprintf(out, "</volume_trustees>\n");
  std::fclose(out);
  return name;
}

double seconds(void (*work)(const char *), const char *name) {
  const auto start = std::chrono::steady_clock::now();
  work(name);
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void copyFile(const char *name) {
  const int fd = open(name, O_RDONLY);
  char chunk[8192];
  for (ssize_t got; (got = read(fd, chunk, sizeof chunk)) > 0;)
    if (write(1, chunk, static_cast<std::size_t>(got)) < 0) break;
  close(fd);
}

long recordsToWrite = 0;

void systemCallsOnly(const char *name) {
  const int fd = open(name, O_RDONLY);
  char chunk[8192];
  while (read(fd, chunk, sizeof chunk) > 0) {
  }
  close(fd);
  static const std::string record(190, 'r');
  for (long i = 0; i < recordsToWrite; ++i)
    if (write(1, record.data(), record.size()) < 0) break;
}

void importFile(const char *name) {
  resetRxlImportScanner();
  if (importRxlTrusteeFile(name, nullptr) != 0) std::exit(1);
}

}  // namespace

int main(int argc, char **argv) {
  const long entries = argc > 1 ? std::atol(argv[1]) : 1000000;
  char dir[] = "/tmp/rxl_import_bench.XXXXXX";
  if (mkdtemp(dir) == nullptr) return 1;
  const int console = dup(1);
  const int devNull = open("/dev/null", O_WRONLY);
  FILE *report = fdopen(console, "w");

  struct Shape {
    const char *what;
    long filterEvery;
  } shapes[] = {{"every 10th entry a filter", 10}, {"no filter at all", 0}};
  for (const Shape &shape : shapes) {
    const std::string name = makeFile(dir, entries, shape.filterEvery);
    recordsToWrite = entries;
    dup2(devNull, 1);
    double copy = 1e9, calls = 1e9, import = 1e9;
    for (int round = 0; round < 3; ++round) {  // best of three, interleaved
      copy = std::min(copy, seconds(copyFile, name.c_str()));
      calls = std::min(calls, seconds(systemCallsOnly, name.c_str()));
      import = std::min(import, seconds(importFile, name.c_str()));
    }
    std::fprintf(report,
                 "%ld entries, %s: copy %.3f s, system calls alone %.3f s, import %.3f s; "
                 "import/copy %.1f, import/system calls %.1f\n",
                 entries, shape.what, copy, calls, import, import / copy, import / calls);
    unlink(name.c_str());
  }
  rmdir(dir);
  return 0;
}
