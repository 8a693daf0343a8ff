#pragma once

#include <string>
#include <string_view>

namespace loomcrest {

// "&", "'", the double quote, ">" and "<" escaped, in that order: an "&amp;" already in the
// URL has its ampersand escaped again.
std::string escapeLocation(std::string_view url);

// One <url> entry, six lines each introduced by a line feed, with change frequency
// "monthly" and priority "0.5". `lastModified` may be empty.
std::string xmlSitemapEntry(std::string_view url, std::string_view lastModified);

}  // namespace loomcrest
