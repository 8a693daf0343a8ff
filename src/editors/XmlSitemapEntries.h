#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The <url> entries of an XML sitemap, read without building a document when the file keeps
// to the plain form the scan writes.
namespace loomcrest::xmlentries {

// Each <url> element of `text` exactly as the XML parser would serialise it (its character
// references decoded, "&", "<" and ">" escaped again), when `text` is a prolog without
// declarations, the urlset element, and entries of loc, lastmod, changefreq and priority
// elements holding plain text. Nothing for any other form, which the caller parses.
std::optional<std::vector<std::string>> plainEntries(std::string_view text);

}  // namespace loomcrest::xmlentries
