#include "sitemap/PageTitles.h"

#include <array>
#include <optional>

#include "platform/Http.h"
#include "platform/Regex.h"
#include "platform/Text.h"

namespace loomcrest {

namespace {

std::string titleOrFallback(std::optional<std::string> title) {
    return title && !title->empty() ? *std::move(title) : std::string(kNoPageTitle);
}

std::string firstTitle(const std::optional<MarkupDocument>& document) {
    if (!document) {
        return std::string(kNoPageTitle);
    }
    const auto titles = document->elementsNamed("title", 1);
    return titleOrFallback(titles.empty() ? std::nullopt
                                          : std::optional(titles.front().stringValue()));
}

// The first non-empty capture of the three quotings. The unquoted form is lazy with nothing
// behind it, so it always captures nothing: an unquoted value never gives a title.
std::string quotedAttributeValue(std::string_view markup, const std::array<Regex, 3>& patterns) {
    for (const Regex& pattern : patterns) {
        if (const auto match = pattern.firstMatch(markup)) {
            if (auto value = match->capture(1); value && !value->empty()) {
                return *value;
            }
        }
    }
    return {};
}

std::string imageTitle(std::string_view imageMarkup) {
    static const std::array<Regex, 3> altPatterns = {
        Regex(R"re(alt="(.*?)")re"), Regex(R"re(alt='(.*?)')re"), Regex("alt=(.*?)")};
    static const std::array<Regex, 3> titlePatterns = {
        Regex(R"re(title="(.*?)")re"), Regex(R"re(title='(.*?)')re"), Regex("title=(.*?)")};

    if (containsIgnoringCase(imageMarkup, "alt=")) {
        std::string alt = quotedAttributeValue(imageMarkup, altPatterns);
        return alt.empty() ? std::string(kImageWithoutAlt) : alt;
    }
    if (containsIgnoringCase(imageMarkup, "title=")) {
        std::string title = quotedAttributeValue(imageMarkup, titlePatterns);
        return title.empty() ? std::string(kImageWithoutTitleOrAlt) : title;
    }
    return {};
}

}  // namespace

PageTitleLookup lookUpPageTitle(std::string_view pageURL, std::chrono::seconds timeout,
                                const http::Session* session) {
    (void)http::fetchText(pageURL, timeout, session);
    auto bytes = http::fetchBytes(pageURL, timeout, session);
    if (!bytes) {
        PageTitleLookup lookup;
        lookup.title = kNoPageTitle;
        return lookup;
    }
    return pageTitleOfBytes(std::move(*bytes));
}

PageTitleLookup pageTitleOfBytes(std::string bytes) {
    PageTitleLookup lookup;
    lookup.bytes = std::move(bytes);
    lookup.htmlOutline = readHtmlOutline(*lookup.bytes);
    lookup.title = titleOrFallback(lookup.htmlOutline ? lookup.htmlOutline->title : std::nullopt);
    if (lookup.title == kNoPageTitle) {
        lookup.title = firstTitle(MarkupDocument::parseXml(*lookup.bytes));
    }
    return lookup;
}

HtmlOutline outlineOfDocument(const MarkupDocument& document) {
    HtmlOutline outline;
    if (const auto titles = document.elementsNamed("title", 1); !titles.empty()) {
        outline.title = titles.front().stringValue();
    }
    for (const MarkupNode& anchor : document.elementsNamed("a")) {
        AnchorOutline& read = outline.anchors.emplace_back();
        read.href = anchor.attribute("href").value_or(std::string());
        read.name = anchor.attribute("name").value_or(std::string());
        read.text = anchor.stringValue();
        if (const auto child = anchor.firstChild();
            child && child->isElement() && child->name() == "img") {
            read.firstChildImage = child->sourceMarkup();
        }
    }
    return outline;
}

std::string findLinkTitle(const AnchorOutline& anchor) {
    std::string title = anchor.text.empty() ? anchor.name : anchor.text;
    if (title.empty()) {
        title =
            anchor.firstChildImage ? imageTitle(*anchor.firstChildImage) : std::string(kNoLinkName);
    }
    return title.empty() ? std::string(kNoLinkTitle) : title;
}

}  // namespace loomcrest
