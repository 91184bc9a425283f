// The simulated server's round trip: a wait before each reply (quillsim latency, sim/latency).
#pragma once

#include <string>
#include <string_view>

namespace qs {

/// Reads "0" or a whole number followed by ns, us, ms or s ("50us"); false for anything else
/// or for more than a minute.
bool parseLatency(std::string_view text, long long &nanoseconds);
/// The shortest exact form of a latency ("50us", "0").
std::string formatLatency(long long nanoseconds);
/// The latency the sandbox is set to (sim/latency), 0 when none is set.
long long loadLatency(const std::string &root);
/// Waits that long (nothing for 0).
void waitLatency(long long nanoseconds);

}  // namespace qs
