#include "latency.h"

#include "text.h"

#include <cerrno>
#include <ctime>

namespace qs {

namespace {
struct Unit {
  std::string_view suffix;
  long long nanoseconds;
};
// Longest suffix first, so that "ms" and "ns" are not read as "s".
constexpr Unit kUnits[] = {{"ns", 1}, {"us", 1000}, {"ms", 1000000}, {"s", 1000000000}};
constexpr long long kMaxLatency = 60LL * 1000000000;
}  // namespace

bool parseLatency(std::string_view text, long long &nanoseconds) {
  if (text == "0") {
    nanoseconds = 0;
    return true;
  }
  for (const Unit &u : kUnits) {
    if (!text.ends_with(u.suffix)) continue;
    std::string_view digits = text.substr(0, text.size() - u.suffix.size());
    if (!isDigits(digits) || digits.size() > 11) return false;
    long long n = 0;
    for (char c : digits)
      n = n * 10 + (c - '0');
    if (n > kMaxLatency / u.nanoseconds) return false;
    nanoseconds = n * u.nanoseconds;
    return true;
  }
  return false;
}

std::string formatLatency(long long ns) {
  if (ns == 0) return "0";
  for (int i = 3; i >= 0; --i)
    if (ns % kUnits[i].nanoseconds == 0)
      return std::to_string(ns / kUnits[i].nanoseconds) + std::string(kUnits[i].suffix);
  return std::to_string(ns) + "ns";
}

long long loadLatency(const std::string &root) {
  std::string text;
  long long ns = 0;
  if (!readFile(root + "/sim/latency", text)) return 0;
  while (!text.empty() && (text.back() == '\n' || text.back() == ' '))
    text.pop_back();
  return parseLatency(text, ns) ? ns : 0;
}

void waitLatency(long long ns) {
  if (ns <= 0) return;
  struct timespec t {
    static_cast<time_t>(ns / 1000000000), static_cast<long>(ns % 1000000000)
  };
  while (::clock_nanosleep(CLOCK_MONOTONIC, 0, &t, &t) == EINTR) {
  }
}

}  // namespace qs
