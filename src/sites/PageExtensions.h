#pragma once

#include <array>
#include <string_view>

namespace loomcrest {

// The extensions that mark a URL as naming a page rather than a folder: the crawler fetches
// only such pages, and a start URL holding none of them gets a trailing "/". The order
// decides which entry matches first.
inline constexpr std::array<std::string_view, 14> kPageExtensions = {
    ".aspx", ".asp",  ".cfm",  ".html",  ".htm",  ".jsp",  ".php",
    ".phps", ".cfml", ".shtm", ".shtml", ".php3", ".php4", ".php5"};

}  // namespace loomcrest
