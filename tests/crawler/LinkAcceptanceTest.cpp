#include <gtest/gtest.h>

#include "app/ProcessState.h"
#include "crawler/PageList.h"
#include "crawler/RobotsRules.h"
#include "crawler/SiteScanner.h"
#include "support/RawHttpServer.h"

namespace loomcrest {

void PrintTo(const LinkDecision& decision, std::ostream* out) {
    constexpr const char* kNames[] = {"Dropped", "Recorded", "Queued"};
    *out << kNames[static_cast<int>(decision.outcome)] << " " << decision.url;
}

namespace {

constexpr auto kDropped = LinkOutcome::Dropped;
constexpr auto kRecorded = LinkOutcome::Recorded;
constexpr auto kQueued = LinkOutcome::Queued;

struct Scanner {
    explicit Scanner(const std::string& page = "http://host/", const std::string& queued = "",
                     const std::string& site = "http://host/") {
        scanner.setAllowedMedia();
        scanner.setSiteBaseURL(site);
        scanner.setPageBaseURLs(page);
        if (!queued.empty()) {
            scanner.uniquePagesLeftMArray.append(queued);
        }
    }
    ProcessState process;
    SiteScanner scanner{process};
};

struct Acceptance {
    std::string href;
    LinkOutcome outcome;
    std::string url;  // empty when dropped
    std::string page = "http://host/";
    std::string queued = "";
    std::string site = "http://host/";
};

TEST(LinkAcceptance, EachHrefIsDroppedRecordedOrQueued) {
    const std::string host = "http://host/";
    const std::string folderA = "http://host/a/";
    const std::string pageA = "http://host/a/page.html";
    const std::string dirIndex = "http://host/dir/index.html";
    const std::vector<Acceptance> cases = {
        // Resolved against the page and queued once; a bare fragment is the page itself. The
        // reasons for the links not queued are in the scan's explanation test.
        {"page.html#top", kQueued, pageA, folderA},
        {"#top", kRecorded, pageA, pageA, pageA},
        {"http://", kDropped, ""},
        {"http://h", kRecorded, "http://h/"},
        // The extension is compared from the first dot, and its case counts.
        {"http://host/a.b/c.html", kDropped, ""},
        {"http://host/c.HTML", kDropped, ""},
        {"/x.php5", kQueued, "http://host/x.php5"},
        // A folder and its index page are one page; index names are glued without a slash.
        {"/dir", kDropped, "", host, "http://host/dirindex.php"},
        // Host twins are one page; the scheme does not decide membership.
        {"http://host/x.html", kRecorded, "http://host/x.html", host, "http://www.host/x.html"},
        {"https://www.host/a.html", kQueued, "https://www.host/a.html"},
        // Queries are queued behind a page name.
        {"/page.php?id=3", kQueued, "http://host/page.php?id=3"},
        // Above-base links are recorded; in-site is a plain prefix test.
        {"../up.html", kRecorded, "http://host/up.html", dirIndex, "", dirIndex},
        {"http://host/directory/x.html", kQueued, "http://host/directory/x.html", host, "",
         "http://host/dir/"},
        {"http://host", kQueued, "http://host/"},
        // A site base without a slash after the host drops everything.
        {"http://host/a.html", kDropped, "", host, "", "http://host"},
    };
    for (const Acceptance& each : cases) {
        Scanner s(each.page, each.queued, each.site);
        EXPECT_EQ(s.scanner.acceptLink(each.href), (LinkDecision{each.outcome, each.url, {}, {}}))
            << each.href << " on " << each.page << " of " << each.site;
        const size_t queuedNow = (each.queued.empty() ? 0 : 1) + (each.outcome == kQueued ? 1 : 0);
        EXPECT_EQ(s.scanner.uniquePagesLeftMArray.size(), queuedNow) << each.href;
    }
}

TEST(LinkAcceptance, FiltersAlwaysWinRobotsOnlyWhileObeyed) {
    Scanner s;
    s.scanner.loadRobotsRules("User-agent: somebot\nDisallow: /private\n");
    EXPECT_EQ(s.scanner.acceptLink("/a/private.html").outcome, kDropped);
    s.scanner.ignoreRobots = true;
    EXPECT_EQ(s.scanner.acceptLink("/private/x.html").outcome, kQueued);
    s.scanner.filters = {"PDF"};
    EXPECT_EQ(s.scanner.acceptLink("/files/report.pdf?x=1").outcome, kDropped);
    EXPECT_EQ(s.scanner.acceptLink("/PdF.html").outcome, kDropped);
}

TEST(LinkAcceptance, BasesAreCutBackOnlyForPageNames) {
    Scanner s("http://host/dir/page.html", "", "http://host/dir/index.html");
    EXPECT_EQ(s.scanner.siteBaseURL, "http://host/dir/");
    EXPECT_EQ(s.scanner.pageBaseURL, "http://host/dir/");
    EXPECT_EQ(s.scanner.pageBaseURLUnchanged, "http://host/dir/page.html");
    s.scanner.setPageBaseURLs("http://host/dir");
    EXPECT_EQ(s.scanner.pageBaseURL, "http://host/dir");
}

// Every Disallow line counts whatever its group; carriage returns stay and match nothing;
// matching is a substring test ignoring case, and empty values match nothing.
TEST(RobotsRules, DisallowValuesAreSubstringsOfTheUrl) {
    EXPECT_EQ(
        parseRobotsText(
            "User-agent: somebot\nDisallow: /private\n# Disallow: /comment\nAllow: /open\n"
            "User-agent: *\nDisallow: /tmp/\ndisallow: /lower\nDisallow:/tight\nDisallow: \n"),
        (std::vector<std::string>{"/private", "/tmp/", ""}));
    const auto withReturn = parseRobotsText("User-agent: *\r\nDisallow: /private\r\n");
    ASSERT_EQ(withReturn, std::vector<std::string>{"/private\r"});
    EXPECT_FALSE(anyEntryOccursIn("http://host/private/x.html", withReturn));
    const std::vector<std::string> rules = {"/a", ""};
    EXPECT_TRUE(anyEntryOccursIn("http://host/x/A/y.html", rules));
    EXPECT_FALSE(anyEntryOccursIn("http://host/x.html", rules));
    EXPECT_TRUE(anyEntryOccursIn("http://host/", std::vector<std::string>{"/"}));
}

// The index holds views of the listed URLs, which must stay where they are as the list grows.
TEST(PageList, KeepsOrderAndAnswersMembershipAsItGrows) {
    PageList list;
    for (int i = 0; i < 10000; ++i) {
        list.append("http://host/" + std::to_string(i % 9999));
    }
    EXPECT_EQ(list.size(), 10000U);
    EXPECT_EQ(list[9999], "http://host/0");
    EXPECT_TRUE(list.contains("http://host/9998"));
    EXPECT_FALSE(list.contains("http://host/9999"));
}

// A redirect is not followed.
TEST(StartUrlProbe, OnlyA200Passes) {
    using Server = test::RawHttpServer;
    const Server server(Server::Routes{
        {"/", Server::page("<html></html>")},
        {"/old/", Server::redirect("301 Moved Permanently", "/")},
        {"/odd/", Server::whole(Server::response("299 Odd", "text/html", ""))},
    });
    ProcessState process;
    SiteScanner scanner{process};
    EXPECT_TRUE(scanner.httpIsValid(server.url("/")));
    EXPECT_FALSE(scanner.httpIsValid("http://127.0.0.1:1/"));
    for (const char* path : {"/missing/", "/old/", "/odd/"}) {
        EXPECT_FALSE(scanner.httpIsValid(server.url(path))) << path;
    }
}

}  // namespace
}  // namespace loomcrest
