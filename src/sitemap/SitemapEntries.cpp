#include "sitemap/SitemapEntries.h"

namespace loomcrest {

namespace {

// The position just after `terminator`, searched from `from`; the end of the text when
// it is missing.
size_t after(std::string_view text, size_t from, std::string_view terminator) {
    const size_t found = text.find(terminator, from);
    return found == std::string_view::npos ? text.size() : found + terminator.size();
}

// The end of the tag that starts at `from`, minding quoted attribute values.
size_t tagEnd(std::string_view text, size_t from) {
    char quote = 0;
    for (size_t i = from; i < text.size(); ++i) {
        const char c = text[i];
        if (quote != 0) {
            quote = c == quote ? 0 : quote;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '>') {
            return i + 1;
        }
    }
    return text.size();
}

// The end of a markup declaration such as <!DOCTYPE ...>, with its internal subset.
size_t declarationEnd(std::string_view text, size_t from) {
    const size_t close = tagEnd(text, from);
    const size_t subset = text.find('[', from);
    return subset < close ? tagEnd(text, after(text, subset, "]")) : close;
}

}  // namespace

std::vector<TextRange> topLevelElements(std::string_view text) {
    std::vector<TextRange> elements;
    size_t depth = 0;
    size_t start = 0;
    size_t i = text.find('<');
    while (i < text.size()) {
        const std::string_view rest = text.substr(i);
        size_t next = 0;
        if (rest.starts_with("<!--")) {
            next = after(text, i + 4, "-->");
        } else if (rest.starts_with("<![CDATA[")) {
            next = after(text, i + 9, "]]>");
        } else if (rest.starts_with("<?")) {
            next = after(text, i + 2, "?>");
        } else if (rest.starts_with("<!")) {
            next = declarationEnd(text, i);
        } else if (rest.starts_with("</")) {
            next = tagEnd(text, i);
            if (depth > 0 && --depth == 1) {
                elements.push_back({start, next});
            }
        } else {
            next = tagEnd(text, i);
            const bool empty = next >= 2 && text[next - 2] == '/';
            if (depth == 1) {
                start = i;
                if (empty) {
                    elements.push_back({start, next});
                }
            }
            depth += empty ? 0 : 1;
        }
        i = text.find('<', next);
    }
    return elements;
}

}  // namespace loomcrest
