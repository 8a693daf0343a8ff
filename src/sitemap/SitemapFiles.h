#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/FileSystem.h"

// The files a scan writes into the site's folder: six HTML layouts and "sitemap.xml",
// created with their headers when a scan starts and closed when it ends.
namespace loomcrest {

inline constexpr std::string_view kOneColumnPagesOnly = "sitemap1cpo.html";
inline constexpr std::string_view kTwoColumnPagesOnly = "sitemap2cpo.html";
inline constexpr std::string_view kThreeColumnPagesOnly = "sitemap3cpo.html";
inline constexpr std::string_view kOneColumnAllLinks = "sitemap1c.html";
inline constexpr std::string_view kTwoColumnAllLinks = "sitemap2c.html";
inline constexpr std::string_view kThreeColumnAllLinks = "sitemap3c.html";
inline constexpr std::string_view kXmlSitemap = "sitemap.xml";
inline constexpr std::string_view kBrokenLinksFile = "badLinks.txt";

// The seven header lines of "sitemap.xml", without a line feed after the last.
std::string_view xmlSitemapHeader();

// What closes each file at the end of a scan. Both table layouts of each width are closed
// by the all-links counters.
std::string_view oneColumnClosing();
std::string_view twoColumnClosing(int32_t filledCells);
std::string_view threeColumnClosing(int32_t filledCells);
inline constexpr std::string_view kXmlSitemapClosing = "\n</urlset>";

// Writes every file with its header alone, atomically, replacing earlier ones; stops at the
// first failure.
WriteResult writeSitemapHeaders(const std::string& folder);
// Appends the closing pieces; stops at the first failure.
WriteResult closeSitemapFiles(const std::string& folder, int32_t twoColumnCells,
                              int32_t threeColumnCells);

}  // namespace loomcrest
