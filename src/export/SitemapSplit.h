#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sitemap/SitemapLimits.h"

namespace loomcrest {

// A well-formed sitemap cut into files search engines accept: the text itself when it is
// within both limits, otherwise parts that each keep the text before the first <url> and
// after the last, and hold as many entries, with their original separators, as both limits
// allow. An entry too big for a part of its own still gets one.
std::vector<std::string> splitSitemap(std::string_view sitemap, const SitemapLimits& limits = {});

// FILE's name with "-NUMBER" before its extension ("/out/sitemap-2.xml"), and ".gz" after it
// when the part is compressed.
std::string sitemapPartPath(std::string_view file, size_t number, bool compressed);

// A sitemaps.org 0.9 <sitemapindex> naming each part as the folder of `siteUrl` followed by
// the part's file name, percent-encoded.
std::string sitemapIndex(std::string_view siteUrl, const std::vector<std::string>& partPaths);

}  // namespace loomcrest
