// Link acceptance: every line is an href of a page deep in a site, judged as the crawl
// judges the anchors of a page, against robots rules and a filter.
#include "FuzzInput.h"
#include "app/ProcessState.h"
#include "crawler/SiteScanner.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace loomcrest;
    ProcessState process;
    SiteScanner scanner(process);
    scanner.setAllowedMedia();
    scanner.setSiteBaseURL("http://example.com/dir/index.html");
    scanner.setPageBaseURLs("http://example.com/dir/sub/page.php?x=1");
    scanner.loadRobotsRules("User-agent: *\nDisallow: /dir/private\n");
    scanner.filters = {"tmp"};
    for (const std::string_view href : fuzz::lines(fuzz::asText(data, size))) {
        (void)scanner.acceptLink(href);
        (void)scanner.rebuildHREF(href);
    }
    return 0;
}
