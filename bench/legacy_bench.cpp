// Converts generated TRUSTEE.KXM reports of 100,000 and 1,000,000 lines and prints the times, the
// ratio between them (linear cost gives about 10), and the cost against plain block copies of the
// report's bytes and of the document's bytes from standard input to a file, in the same run.
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <string>

#include "legacy/report_line.h"
#include "legacy/trustee_report.h"

namespace {

std::string directory;

// A report of `lines` records cycling through every kind the conversion knows and some it skips.
std::string writeReport(long lines) {
  const std::string path = directory + "/report" + std::to_string(lines) + ".txt";
  FILE *out = std::fopen(path.c_str(), "w");
  std::fputs("TRUSTEE.KXM\r\n", out);
  for (long i = 0; i < lines; ++i) {
    switch (i % 6) {
    case 0:
      std::fprintf(
          out, "\"TRUSTEE\",\"VOL1:\\HOME\\USER%ld\",\"x\",\"USER%ld.SALES\",\"RWCEMF\"\r\n", i, i);
      break;
    case 1: std::fprintf(out, "\"IRM\",\"VOL1:\\HOME\\USER%ld\",\"x\",\"SRF\",\"\"\r\n", i); break;
    case 2:
      std::fprintf(out, "\"DIRQUOTA\",\"VOL1:\\SHARED\\D%ld\",\"x\",\"1048576\",\"2048\"\r\n", i);
      break;
    case 3:
      std::fprintf(out, "\"USERQUOTA\",\"VOL1:\",\"x\",\"USER%ld.SALES\",\"512000\"\r\n", i);
      break;
    case 4: std::fprintf(out, "\"ATTR\",\"VOL1:\\HOME\\USER%ld\",\"x\",\"H\",\"\"\r\n", i); break;
    default:
      std::fprintf(out, "\"TRUSTEE\",\"APPS\\TOOLS\\T%ld\",\"x\",\"[Public]\",\"RF\"\r\n", i);
      break;
    }
  }
  std::fclose(out);
  return path;
}

// Seconds taken by `work` with `path` on standard input.
template <typename Work> double timed(const std::string &path, Work work) {
  const int fd = open(path.c_str(), O_RDONLY);
  const int savedStdin = dup(0);
  dup2(fd, 0);
  close(fd);
  const auto start = std::chrono::steady_clock::now();
  work();
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  dup2(savedStdin, 0);
  close(savedStdin);
  return elapsed.count();
}

double convertSeconds(const std::string &path) {
  const std::string output = directory + "/document.xml";
  resetReportInput();
  const int savedStderr = dup(2);
  const int devNull = open("/dev/null", O_WRONLY);
  dup2(devNull, 2);
  close(devNull);
  const double seconds = timed(path, [&] {
    if (convertTrusteeReport("CORP", output.c_str(), "data") != 0) std::abort();
  });
  dup2(savedStderr, 2);
  close(savedStderr);
  return seconds;
}

// The floor: standard input copied to a file in 64 KiB blocks.
double copySeconds(const std::string &path) {
  const std::string output = directory + "/copy.txt";
  return timed(path, [&] {
    static char block[64 * 1024];
    const int out = open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ssize_t got;
    while ((got = read(0, block, sizeof block)) > 0)
      if (write(out, block, static_cast<std::size_t>(got)) != got) std::abort();
    close(out);
  });
}

double best(double (*measure)(const std::string &), const std::string &path) {
  double fastest = 1e9;
  for (int round = 0; round < 3; ++round) {
    const double seconds = measure(path);
    if (seconds < fastest) fastest = seconds;
  }
  return fastest;
}

}  // namespace

int main() {
  // Files in memory (/dev/shm when there is one), so disk write-back does not blur the ratios.
  char pattern[] = "/dev/shm/legacy-bench-XXXXXX";
  char fallback[] = "/tmp/legacy-bench-XXXXXX";
  if (mkdtemp(pattern) != nullptr)
    directory = pattern;
  else if (mkdtemp(fallback) != nullptr)
    directory = fallback;
  else
    return 1;
  const std::string small = writeReport(100000);
  const std::string large = writeReport(1000000);
  const double smallConvert = best(convertSeconds, small);
  const double largeConvert = best(convertSeconds, large);
  const double largeCopy = best(copySeconds, large);
  // The document is larger than the report: copying the document's bytes is the output floor.
  convertSeconds(large);
  const std::string document = directory + "/document1000000.xml";
  std::rename((directory + "/document.xml").c_str(), document.c_str());
  const double documentCopy = best(copySeconds, document);
  std::printf("convert   100,000 lines: %8.3f s\n", smallConvert);
  std::printf("convert 1,000,000 lines: %8.3f s\n", largeConvert);
  std::printf("ratio 1,000,000 / 100,000: %.2f (linear is about 10)\n",
              largeConvert / smallConvert);
  std::printf("copy of the 1,000,000-line report:   %8.3f s (convert / copy: %.1f)\n", largeCopy,
              largeConvert / largeCopy);
  std::printf("copy of the 1,000,000-line document: %8.3f s (convert / copy: %.1f)\n", documentCopy,
              largeConvert / documentCopy);
  const std::string cleanup = "rm -rf '" + directory + "'";
  return std::system(cleanup.c_str()) == 0 ? 0 : 1;
}
