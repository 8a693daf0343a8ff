#include "sitemap/PageTitles.h"

#include <array>
#include <optional>

#include "platform/Http.h"
#include "platform/Regex.h"
#include "platform/Text.h"

namespace loomcrest {

namespace {

std::string firstTitle(const std::optional<MarkupDocument>& document) {
    if (!document) {
        return std::string(kNoPageTitle);
    }
    const auto titles = document->elementsNamed("title", 1);
    if (titles.empty()) {
        return std::string(kNoPageTitle);
    }
    std::string title = titles.front().stringValue();
    return title.empty() ? std::string(kNoPageTitle) : title;
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
    lookup.htmlDocument = MarkupDocument::parseHtml(*lookup.bytes);
    lookup.title = firstTitle(lookup.htmlDocument);
    if (lookup.title == kNoPageTitle) {
        lookup.title = firstTitle(MarkupDocument::parseXml(*lookup.bytes));
    }
    return lookup;
}

std::string findHREFInNode(const MarkupNode& anchor) {
    return anchor.attribute("href").value_or(std::string());
}

std::string findLinkTitle(const MarkupNode& anchor) {
    std::string title = anchor.stringValue();
    if (title.empty()) {
        title = anchor.attribute("name").value_or(std::string());
    }
    if (title.empty()) {
        const auto child = anchor.firstChild();
        if (child && child->isElement() && child->name() == "img") {
            title = imageTitle(child->sourceMarkup());
        } else {
            title = kNoLinkName;
        }
    }
    return title.empty() ? std::string(kNoLinkTitle) : title;
}

}  // namespace loomcrest
