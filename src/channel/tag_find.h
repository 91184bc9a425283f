// Finding a tag in a reply: where string_view::find would find it, but screened 16 places at a
// time on the tag's first two bytes, so that a search that finds nothing, or passes many other
// tags, costs a few vector steps instead of a stop at every '<'.
#pragma once
#include <cstddef>
#include <string_view>

// The first place of `tag` in `text` at or after `from`, or npos. No byte past text's end is read.
std::size_t findTag(std::string_view text, std::string_view tag, std::size_t from);
