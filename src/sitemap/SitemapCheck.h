#pragma once

#include <string_view>
#include <vector>

#include "sitemap/SitemapLimits.h"
#include "sitemap/SitemapProblems.h"

namespace loomcrest {

// Checks a sitemap or sitemap index against the rules of sitemaps.org 0.9, as search engines
// apply them: well-formed XML with every "&" escaped, within the limits of one file, every
// address absolute, on the site's host and under the folder of `siteUrl`, W3C dates, known
// change frequencies and priorities from 0.0 to 1.0. An empty date and a bare "'" in an
// address are only warnings: the export repairs them. The problems come in line order.
std::vector<SitemapProblem> checkSitemap(std::string_view text, std::string_view siteUrl,
                                         const SitemapLimits& limits = {});

}  // namespace loomcrest
