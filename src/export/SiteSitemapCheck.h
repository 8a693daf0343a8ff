#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sitemap/SitemapProblems.h"

namespace loomcrest {

struct SitemapFileCheck {
    // Set when the file could not be read: the system's reason.
    std::optional<std::string> readFailure;
    std::vector<SitemapProblem> problems;
};

// Checks a sitemap file against the sitemaps.org rules for the site named `siteName` (its
// URL gives the host and folder every address must stand under). A gzip file is checked
// as what it holds.
SitemapFileCheck checkSitemapFile(std::string_view siteName, const std::string& path);

// The site's own "sitemap.xml".
std::string siteSitemapPath(std::string_view siteName);

}  // namespace loomcrest
