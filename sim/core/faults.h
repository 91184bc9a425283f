// Failures the sandbox has been told to produce on demand (sim/faults, one a line).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qs {

struct Fault {
  std::string kind;     // refuse, no-marker, no-result, oversize, read-error, write-error, rxlcon
  std::string pattern;  // request text that triggers it; empty matches every request
  std::string value;    // result value, byte count, errno, or the rxlcon mode
  std::string description;
  std::string name;
};

std::vector<Fault> loadFaults(const std::string &root);
bool saveFaults(const std::string &root, const std::vector<Fault> &faults);

/// The first fault of the kind whose pattern occurs in text, or null.
const Fault *findFault(const std::vector<Fault> &faults, std::string_view kind,
                       std::string_view text);

/// Parses an errno given as a number or a name such as EIO; 0 when unknown.
int parseErrno(std::string_view text);

}  // namespace qs
