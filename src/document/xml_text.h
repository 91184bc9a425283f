// In-place helpers for the raw text that the tag reader returns.
#pragma once
#include <cstddef>

// Decodes &lt; &gt; &amp; &apos; &quot; in place. Returns the summed length of the references
// replaced (0 when none), kOwnFailure for a null string. An '&' that starts none of the five
// references makes the call never return: that is how the program has always behaved on such input.
int unescapeXml(char *s);

// Turns a typed dotted directory name (".cn=admin.ou=sales.o=corp") into its typeless form
// ("admin.sales.corp"), in place, after decoding entities.
void toTypelessName(char *s);

// Replaces the tree component of "name.TREE." with `tree` (no change when tree is null, the name
// is shorter than 3 bytes, has no trailing dot, or has no other dot after index 0).
// Returns false, leaving `name` unchanged, when the result would not fit in `capacity` bytes.
bool replaceTreeName(char *name, const char *tree, std::size_t capacity = 1024);
