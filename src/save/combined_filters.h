// The user-type removal and the path filter of one info file, decided in one forward pass.
#pragma once

#include <cstddef>

// removeElements(text, length, startName, endName) and then, when that succeeds,
// filterByPath(text, length, path, scratch, elementName), for a text that holds no NUL before
// *length. Gives the text, length and scratch that the two give in turn, without moving the
// whole text once for each: the path filter judges the elements of the text as read while the
// removed elements are found alongside, and both kinds of gap are closed in one compaction.
// Where a removed element could change what the path filter sees (it overlaps an element's tags
// or its path, or could join the text around it into a tag), the rest is done by the two filters
// in turn. Returns the removal's status: 0, or -1 for a missing argument or after
// "Missing end tag : %s" (the text is then left unusable). *sizeLeft is the size of the text
// left in place, the unfiltered rest after an element without an end tag included. When given,
// *inTurn tells whether any part was done by the two filters in turn.
int removeAndFilterByPath(char *text, int *length, const char *startName, const char *endName,
                          const char *path, char *scratch, const char *elementName,
                          std::size_t *sizeLeft, bool *inTurn = nullptr);
