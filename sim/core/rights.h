// Rights of a trustee or an inherited rights filter, held as a set of the ten rights.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qs {

using Rights = uint16_t;

/// Parses a run of empty elements such as "<read/><write/>". False on anything else.
bool rightsFromElements(std::string_view elements, Rights &out, std::string &bad);

/// Parses letters ("RWF", "rwf"); "-", "none" and "" are no rights. False on an unknown letter.
bool rightsFromLetters(std::string_view letters, Rights &out);

/// "<read/><write/>..." in the volume's fixed order.
std::string rightsToElements(Rights r);

/// Upper-case letters in the volume's fixed order ("RWF"); empty for no rights.
std::string rightsToLetters(Rights r);

}  // namespace qs
