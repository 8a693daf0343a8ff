#pragma once

#include <string>
#include <vector>

namespace loomcrest {

// The broken-links list as an HTML 4.01 page: one paragraph with a link per URL, the URLs
// written as they stand.
std::string brokenLinksHtml(const std::vector<std::string>& urls);
// One URL a line, then an empty line.
std::string brokenLinksText(const std::vector<std::string>& urls);

}  // namespace loomcrest
