#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace loomcrest {

// The values of every line of a robots.txt that begins exactly with "Disallow: ", in file
// order, whatever User-agent group they stand in. Nothing is trimmed, so a file with
// carriage-return line ends yields values that end in one and match no URL.
std::vector<std::string> parseRobotsText(std::string_view text);

// Whether any non-empty entry occurs anywhere in `url`, ignoring case.
bool anyEntryOccursIn(std::string_view url, const std::vector<std::string>& entries);
// The first entry, in list order, that occurs in `url` ignoring case; null when none does.
const std::string* firstEntryOccurringIn(std::string_view url,
                                         const std::vector<std::string>& entries);

}  // namespace loomcrest
