// Titles: the page title of the bytes, and the title and address of every anchor in them,
// as they become lines of the sitemap. The elements a scan finds by walking the tree must be
// those XPath selects; a difference stops the fuzzer.
#include <algorithm>
#include <cstddef>
#include <cstdlib>
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const PageTitleLookup page = pageTitleOfBytes(std::string(fuzz::asText(data, size)));
    (void)pageTitleLine("http://example.com/", 0, page.title);
    if (page.htmlDocument) {
        checkWalkAgainstXPath(*page.htmlDocument);
        int linkId = 1;
        for (const MarkupNode& anchor : page.htmlDocument->elementsNamed("a")) {
            const std::string line =
                linkLine(findHREFInNode(anchor), ++linkId, findLinkTitle(anchor));
            (void)withoutLinkMarkers(line);
        }
    }
    return 0;
}
