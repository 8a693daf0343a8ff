#pragma once

#include <string>
#include <string_view>

// Fields of tab- and comma-separated tables.
namespace loomcrest {

// Tabs and line breaks become blanks, so a field never splits a line.
std::string tsvField(std::string_view text);
// RFC 4180: a field holding a comma, a quote or a line break is quoted, its quotes doubled.
std::string csvField(std::string_view text);

}  // namespace loomcrest
