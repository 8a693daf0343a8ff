// Titles: the page title of the bytes, and the title and address of every anchor in them,
// as they become lines of the sitemap.
#include "FuzzInput.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/PageTitles.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace loomcrest;
    const PageTitleLookup page = pageTitleOfBytes(std::string(fuzz::asText(data, size)));
    (void)pageTitleLine("http://example.com/", 0, page.title);
    if (page.htmlDocument) {
        int linkId = 1;
        for (const MarkupNode& anchor : page.htmlDocument->select("//a")) {
            const std::string line =
                linkLine(findHREFInNode(anchor), ++linkId, findLinkTitle(anchor));
            (void)withoutLinkMarkers(line);
        }
    }
    return 0;
}
