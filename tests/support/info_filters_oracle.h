// The info-file filters done the literal way, one element at a time: each removal moves the
// whole rest of the text. Quadratic; kept only to check the one-pass filters against.
#pragma once

namespace oracle {

int removeElements(char *text, int *length, const char *startName, const char *endName);
void filterByPath(char *text, int *length, const char *path, char *scratch,
                  const char *elementName);
void removeRange(char *position, int count, int *length);

}  // namespace oracle
