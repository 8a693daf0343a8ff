// Titles: the page title of the bytes, and the title and address of every anchor in them,
// as they become lines of the sitemap. What a scan reads from the parser's events must be
// what the parser's tree holds, and the elements a walk of the tree finds must be those
// XPath selects; a difference stops the fuzzer.
#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <vector>

#include "FuzzInput.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/PageTitles.h"

namespace {

using namespace loomcrest;

bool sameNodes(const std::vector<MarkupNode>& walked, const std::vector<MarkupNode>& selected) {
    if (walked.size() != selected.size()) {
        return false;
    }
    for (size_t i = 0; i < walked.size(); ++i) {
        if (walked[i].markup() != selected[i].markup()) {
            return false;
        }
    }
    return true;
}

void checkWalkAgainstXPath(const MarkupDocument& document) {
    std::vector<MarkupNode> titles = document.select("//title");
    titles.erase(titles.begin() + static_cast<std::ptrdiff_t>(std::min<size_t>(titles.size(), 1)),
                 titles.end());
    if (!sameNodes(document.elementsNamed("a"), document.select("//a")) ||
        !sameNodes(document.elementsNamed("title", 1), titles)) {
        std::abort();
    }
}

void checkOutlineAgainstTree(const std::optional<HtmlOutline>& outline, std::string_view bytes) {
    const auto document = MarkupDocument::parseHtml(bytes);
    if (document.has_value() != outline.has_value()) {
        std::abort();
    }
    if (document) {
        checkWalkAgainstXPath(*document);
        if (!(*outline == outlineOfDocument(*document))) {
            std::abort();
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes = fuzz::asText(data, size);
    const PageTitleLookup page = pageTitleOfBytes(std::string(bytes));
    (void)pageTitleLine("http://example.com/", 0, page.title);
    checkOutlineAgainstTree(page.htmlOutline, bytes);
    if (page.htmlOutline) {
        int linkId = 1;
        for (const AnchorOutline& anchor : page.htmlOutline->anchors) {
            const std::string line = linkLine(anchor.href, ++linkId, findLinkTitle(anchor));
            (void)withoutLinkMarkers(line);
        }
    }
    return 0;
}
