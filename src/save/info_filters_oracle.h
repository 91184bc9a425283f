// The info-file filters done element by element, exactly as described: each removal moves the
// whole rest of the text. Quadratic; kept only to check the one-pass filters against.
#pragma once

namespace oracle {

int removeElements(char *text, int *length, const char *startName, const char *endName);
void filterByPath(char *text, int *length, const char *path, char *scratch,
                  const char *elementName);
void removeRange(char *position, int count, int *length);

}  // namespace oracle
