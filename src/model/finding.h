// A problem found in a document: where it stands, a stable code for machines and the message
// for people.
#pragma once
#include <functional>
#include <string>

#include "model/entry.h"

struct Finding {
  Position at;
  std::string code;     // stable, e.g. "not-well-formed", "unknown-element"
  std::string message;  // what is wrong, e.g. "unknown element <foo> in <file>"
};

// Where a reader sends each finding as it is made.
using FindingSink = std::function<void(Finding)>;
