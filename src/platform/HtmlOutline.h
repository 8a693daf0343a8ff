#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace loomcrest {

// An anchor of a page, as far as a crawl reads it.
struct AnchorOutline {
    // The "href" and "name" attributes; empty when the anchor has none.
    std::string href;
    std::string name;
    // The text of all its descendants, in document order.
    std::string text;
    // When its first child is an image: the image's start tag as written in the source.
    std::optional<std::string> firstChildImage;

    friend bool operator==(const AnchorOutline&, const AnchorOutline&) = default;
};

// The text of a page's first "title" element and its anchors, in document order: what the
// tree of libxml2's HTML parser holds, read from the parser's events without building the
// tree. A crawl reads this from every page, so it is kept cheap. Where the tree builder gives
// up, at a run of text over 10 MB, the reading goes on.
struct HtmlOutline {
    std::optional<std::string> title;
    std::vector<AnchorOutline> anchors;

    friend bool operator==(const HtmlOutline&, const HtmlOutline&) = default;
};

// Nothing when the bytes hold no element at all, just as a tree parse gives no document.
std::optional<HtmlOutline> readHtmlOutline(std::string_view bytes);

}  // namespace loomcrest
