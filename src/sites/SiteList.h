#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace loomcrest {

// The site name of a file path relative to the data root: the last six characters are
// removed, then everything back to and including the last "/". "Example/Example.vrLMP"
// gives "Example"; so does "Example/sitemap.xml". A path without a "/" names no site.
std::optional<std::string> siteNameFromPath(std::string_view relativePath);

// The site names of every entry of the data root whose extension is exactly `extension`
// (case-sensitive), in the order of the walk, neither sorted nor de-duplicated.
std::vector<std::string> siteNamesWithExtension(std::string_view extension);

// Converts every ".vrlmp" site file of the old format under the data root to a ".vrLMP"
// file that keeps only the name and URL, and deletes the old format's sitemaps beside it.
// Returns whether any file was converted.
bool convertOldSiteFiles();

}  // namespace loomcrest
