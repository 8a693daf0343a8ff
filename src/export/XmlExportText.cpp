#include "export/XmlExportText.h"

#include <algorithm>

namespace loomcrest {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// Removes every `needle`, counting them.
size_t removeAll(std::string& text, std::string_view needle) {
    std::string kept;
    size_t removed = 0;
    size_t from = 0;
    for (size_t found = text.find(needle); found != std::string::npos;
         found = text.find(needle, from)) {
        kept.append(text, from, found - from);
        from = found + needle.size();
        ++removed;
    }
    if (removed > 0) {
        kept.append(text, from);
        text = std::move(kept);
    }
    return removed;
}

// The end of an empty <lastmod> element starting at `open` ("<lastmod/>", or a start and an
// end tag with nothing but blanks between), or nothing.
size_t emptyDateEnd(std::string_view text, size_t open) {
    size_t i = open + std::string_view("<lastmod").size();
    while (i < text.size() && isBlank(text[i])) {
        ++i;
    }
    if (text.substr(i, 2) == "/>") {
        return i + 2;
    }
    if (text.substr(i, 1) != ">") {
        return std::string_view::npos;
    }
    ++i;
    while (i < text.size() && isBlank(text[i])) {
        ++i;
    }
    constexpr std::string_view kEndTag = "</lastmod>";
    return text.substr(i, kEndTag.size()) == kEndTag ? i + kEndTag.size() : std::string_view::npos;
}

// Empty dates written otherwise than the scan and the editor write them.
size_t removeOtherEmptyDates(std::string& text) {
    std::string kept;
    size_t removed = 0;
    size_t from = 0;
    for (size_t open = text.find("<lastmod"); open != std::string::npos;
         open = text.find("<lastmod", open + 1)) {
        const size_t end = emptyDateEnd(text, open);
        if (end == std::string_view::npos) {
            continue;
        }
        size_t start = open;
        while (start > from && isBlank(text[start - 1])) {
            --start;
        }
        kept.append(text, from, start - from);
        from = end;
        open = end - 1;
        ++removed;
    }
    if (removed > 0) {
        kept.append(text, from);
        text = std::move(kept);
    }
    return removed;
}

// The XML view saves addresses as its parser hands them back, with "'" and the like bare;
// sitemaps.org asks for them escaped, as the scan writes them.
void escapeQuotesInLocations(std::string& text) {
    constexpr std::string_view kOpen = "<loc>";
    std::string escaped;
    size_t from = 0;
    for (size_t open = text.find(kOpen); open != std::string::npos;
         open = text.find(kOpen, open + 1)) {
        const size_t close = std::min(text.find("</loc>", open), text.size());
        escaped.append(text, from, open - from);
        for (size_t i = open; i < close; ++i) {
            const char c = text[i];
            escaped += c == '\'' ? "&apos;" : c == '"' ? "&quot;" : std::string(1, c);
        }
        from = close;
        open = close == text.size() ? close - 1 : close;
    }
    if (from > 0) {
        escaped.append(text, from);
        text = std::move(escaped);
    }
}

}  // namespace

XmlExportText xmlSitemapForExport(std::string_view sitemap) {
    XmlExportText result{std::string(sitemap), 0};
    result.emptyDatesLeftOut = removeAll(result.text, "<lastmod></lastmod>\n\t\t");
    // Only the two middle elements can be empty with another element after them: both
    // writers of the file put <priority> last in its entry.
    removeAll(result.text, "<changefreq></changefreq>\n\t\t");
    result.emptyDatesLeftOut += removeOtherEmptyDates(result.text);
    escapeQuotesInLocations(result.text);
    return result;
}

}  // namespace loomcrest
