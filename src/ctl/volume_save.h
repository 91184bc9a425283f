// The live volume as a Metadata document, read through its info files by trovan save's own code.
// (The same function as the vol:NAME operand's; one of the two goes when the branches meet.)
#pragma once
#include <string>

// Writes the Metadata document of the live volume `volume` (all sections, no user type or path
// filter, nothing removed) to `fd` with trovan save's own code. Returns 0, or trovan save's
// completion code after its messages.
int saveVolumeTo(const std::string &volume, int fd);
