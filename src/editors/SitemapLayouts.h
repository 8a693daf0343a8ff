#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "sitemap/SitemapFiles.h"

namespace loomcrest {

struct SitemapLayout {
    std::string_view name;
    std::string_view file;
    int columns;
};

// The layout pop-up's items, in its order.
inline constexpr std::array<SitemapLayout, 6> kSitemapLayouts = {{
    {"Three Columns, All Links", kThreeColumnAllLinks, 3},
    {"Two Columns, All Links", kTwoColumnAllLinks, 2},
    {"Single Column, All Links", kOneColumnAllLinks, 1},
    {"Three Columns, Pages Only", kThreeColumnPagesOnly, 3},
    {"Two Columns, Pages Only", kTwoColumnPagesOnly, 2},
    {"Single Column, Pages Only", kOneColumnPagesOnly, 1},
}};

}  // namespace loomcrest
