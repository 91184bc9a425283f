// How the file system reads the texts trovan puts into its requests: references to the five
// named entities and numeric character references are decoded; an '&' that starts none of
// them is taken as it stands.
#pragma once
#include <string>
#include <string_view>

std::string decodeAsServer(std::string_view text);
// The same into `out` (replaced; its storage is reused).
void decodeAsServer(std::string_view text, std::string &out);

// Whether `text`, placed as it stands inside an element of a request, forms markup there: a
// '<' that opens a tag, an end tag, a comment, a CDATA section or a processing instruction and
// is closed by a '>' within the text. A '<' that opens nothing ("l<t") is not markup.
bool formsMarkup(std::string_view text);

// Whether `text` holds an '&' that trovan's entity decoding (the RXL console path's) never gets
// past: one that starts none of &lt; &gt; &amp; &apos; &quot;.
bool hasUndecodableAmpersand(std::string_view text);
