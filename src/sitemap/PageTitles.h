#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "platform/HtmlDocument.h"
#include "platform/HtmlOutline.h"
#include "platform/Http.h"

// The texts under which the sitemap lists pages and links. None of these fails: each falls
// back to a fixed text, which then stands in the sitemap as it is.
namespace loomcrest {

inline constexpr std::string_view kNoPageTitle = "Could not find page title";
inline constexpr std::string_view kImageWithoutAlt = "Image Link With No Alt Tag";
inline constexpr std::string_view kImageWithoutTitleOrAlt = "Image Link With No Title or Alt Tags";
inline constexpr std::string_view kNoLinkName = "No Link Name Found";
inline constexpr std::string_view kNoLinkTitle = "Could not find link title";

// A page's title and what finding it fetched and read on the way, so that the crawl need
// not parse the same bytes again. The page is fetched twice: once as text, whose result is
// not used, then as bytes. The title is "//title" of the HTML parse, else of the XML parse.
struct PageTitleLookup {
    std::string title;
    std::optional<std::string> bytes;
    std::optional<HtmlOutline> htmlOutline;
};
// Each fetch waits at most `timeout` for its answer and obeys the session when one is given.
PageTitleLookup lookUpPageTitle(std::string_view pageURL, std::chrono::seconds timeout,
                                const http::Session* session = nullptr);
// The title of a page's bytes, as lookUpPageTitle finds it once they have arrived.
PageTitleLookup pageTitleOfBytes(std::string bytes);

// The same outline as readHtmlOutline gives, read from a parsed document's tree: its first
// "//title" and its "//a" elements.
HtmlOutline outlineOfDocument(const MarkupDocument& document);
// The anchor's text; else its name; else the alt or title text of an image that is its
// first child; else a fallback.
std::string findLinkTitle(const AnchorOutline& anchor);

}  // namespace loomcrest
