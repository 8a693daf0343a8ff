#include <gtest/gtest.h>

#include "app/ProcessState.h"
#include "crawler/SiteScanner.h"

namespace loomcrest {
namespace {

struct Rebuild {
    std::string href;
    std::string rebuilt;
    std::string page = "http://host/site/a/b/page.html";
};

TEST(RebuildHref, HrefsAreMadeAbsoluteByTheirOwnRules) {
    const std::vector<Rebuild> cases = {
        // The site base and absolute links stand as they are.
        {"http://host/site/", "http://host/site/"},
        {"https://elsewhere/x", "https://elsewhere/x"},
        {"ftp://files/x", "ftp://files/x"},
        {"httpish.html", "httpish.html"},
        {"mailto:me@host", "mailto:me@host"},
        {"mailto:", "http://host/site/"},
        {"#top", "http://host/site/a/b/page.html"},
        // Parent folders are climbed one per group and stop at the root.
        {"../x.html", "http://host/site/a/x.html"},
        {"../../x.html", "http://host/site/x.html"},
        {"../../../../../../x.html", "http://host/x.html"},
        {"../../x.html", "http://host/x.html", "http://host"},
        {"../x.html", "/x.html", ""},
        // "./" loses the rest of the href.
        {"./other.html", "http://host/site/a/b/"},
        {"/x.html", "http://host/x.html", "http://user@host:8080/a/page.html"},
        {"", "http://host/site/a/b/"},
        {"x.html", "http://host/site/a/b/x.html"},
        {"x.html", "http://host/dir/x.html", "http://host/dir"},
    };
    ProcessState process;
    SiteScanner scanner{process};
    scanner.setAllowedMedia();
    scanner.setSiteBaseURL("http://host/site/");
    for (const Rebuild& each : cases) {
        scanner.setPageBaseURLs(each.page);
        EXPECT_EQ(scanner.rebuildHREF(each.href), each.rebuilt) << each.href << " on " << each.page;
    }
    // A page base that names a page is joined as it stands.
    scanner.pageBaseURL = "http://host/page.html";
    EXPECT_EQ(scanner.rebuildHREF("x.html"), "http://host/page.htmlx.html");
}

}  // namespace
}  // namespace loomcrest
