#pragma once

#include <cstddef>
#include <string_view>

namespace loomcrest {

// What search engines accept in one sitemap file (sitemaps.org 0.9).
inline constexpr size_t kMaxSitemapUrls = 50000;
inline constexpr size_t kMaxSitemapBytes = size_t{50} * 1024 * 1024;
// A URL must be shorter than this.
inline constexpr size_t kUrlLengthLimit = 2048;
inline constexpr std::string_view kSitemapNamespace = "http://www.sitemaps.org/schemas/sitemap/0.9";

// The limits one sitemap file is held to; tests shrink them.
struct SitemapLimits {
    size_t maxUrls = kMaxSitemapUrls;
    size_t maxBytes = kMaxSitemapBytes;
};

}  // namespace loomcrest
