// Messages shared by the section walkers of restore.
#pragma once

// "Unrecognized tag: %s\n": a start tag that the walker does not know; reading goes on.
void reportUnrecognizedTag(const char *tag);

// "Value too long in element %s; entry skipped.\n": a text longer than the field that would carry
// it into a request. Nothing that depends on the value is sent.
void reportValueTooLong(const char *element);

// "No path for the entry <%s>; entry skipped.\n": a trustee or filter before its file's path.
void reportNoPath(const char *element);
