#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace loomcrest {

inline constexpr std::string_view kNoSitesScanned = "No Sites Have Been Scanned";

struct SitePickerItems {
    // The sites that have an XML sitemap, in the order of the data root's walk, or the one
    // item "No Sites Have Been Scanned".
    std::vector<std::string> items;
    // The item named like the site-name field, if any.
    std::optional<size_t> selected;
};

SitePickerItems populateSitePicker(std::string_view shownSiteName);

}  // namespace loomcrest
