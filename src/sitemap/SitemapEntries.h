#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace loomcrest {

// Where an element stands in a text: from its "<" to just after its end tag's ">".
struct TextRange {
    size_t begin = 0;
    size_t end = 0;
};

// The elements directly inside the root element of a well-formed document, in order, as
// byte ranges of the text, found without building a tree: the <url> entries of a sitemap.
// Comments, CDATA sections, processing instructions and the document type are skipped.
std::vector<TextRange> topLevelElements(std::string_view text);

}  // namespace loomcrest
