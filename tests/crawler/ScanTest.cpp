#include <gtest/gtest.h>

#include <tuple>

#include "crawler/CrawlSettingsFile.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/LayoutMarkup.h"
#include "sitemap/SitemapFiles.h"
#include "sitemap/XmlSitemapFormat.h"
#include "support/RawHttpServer.h"
#include "support/ScanFixture.h"
#include "support/TextChecks.h"

namespace loomcrest {
namespace {

using test::TestPage;

const std::string kClearer(layoutmarkup::kClearer);
const std::string kRowOpening(layoutmarkup::kRowOpening);
const std::string kCellSeparator(layoutmarkup::kCellSeparator);
const std::string kRowClosing(layoutmarkup::kRowClosing);
const std::string kOneColumnEnd(layoutmarkup::kOneColumnEnd);
const std::string kTableEnd(layoutmarkup::kTableEnd);
const std::string kPaddedRowEnd(layoutmarkup::kPaddedRowEnd);

std::string head() {
    return std::string(htmlSitemapHead());
}
std::string tableHead() {
    return head() + std::string(kTableOpening);
}

class Scan : public test::ScanFixture {
protected:
    std::string url(const std::string& path) const { return server.url(path); }
};

TEST_F(Scan, ASmallSiteBecomesItsSixLayoutsXmlAndStatistics) {
    servePage("/", {R"(<html><head><title>Home</title></head><body>)"
                    R"(<a href="a.html">A</a><a href="">Empty</a><a href="b.html">B</a>)"
                    R"(<a href="http://other.org/x.html">Off</a><a href="a.html">A again</a>)"
                    R"(</body></html>)",
                    "text/html", 200, "Fri, 17 May 2024 10:00:00 GMT"});
    servePage("/a.html", {R"(<html><head><title>A & co</title></head><body>)"
                          R"(<a href="/">Home</a></body></html>)"});
    addSite();
    scan();

    const std::string home = url("/");
    const std::string titleHome = pageTitleLine(home, 0, "Home");
    const std::string blockHome = titleHome + linkLine(url("/a.html"), 2, "A") +
                                  linkLine(url("/b.html"), 4, "B") +
                                  linkLine("http://other.org/x.html", 5, "Off");
    const std::string titleA = pageTitleLine(url("/a.html"), 6, "A & co");
    const std::string blockA = titleA + linkLine(home, 8, "Home");
    EXPECT_TRUE(test::contains(titleA, "A &amp; co"));

    // The pages-only layouts hold the title lines, the all-links ones the page blocks.
    for (const auto& [kind, first, second] :
         {std::tuple{"cpo", titleHome, titleA}, std::tuple{"c", blockHome, blockA}}) {
        const std::string row = kRowOpening + first + kCellSeparator + second;
        EXPECT_EQ(siteFile("sitemap1" + std::string(kind) + ".html"),
                  head() + "\n" + first + kClearer + "\n" + second + kClearer + kOneColumnEnd);
        EXPECT_EQ(siteFile("sitemap2" + std::string(kind) + ".html"),
                  tableHead() + row + kRowClosing + kTableEnd);
        EXPECT_EQ(siteFile("sitemap3" + std::string(kind) + ".html"),
                  tableHead() + row + kCellSeparator + kPaddedRowEnd);
    }
    EXPECT_EQ(siteFile("sitemap.xml"), std::string(xmlSitemapHeader()) +
                                           xmlSitemapEntry(home, "2024-05-17") +
                                           xmlSitemapEntry(url("/a.html"), "") + "\n</urlset>");
    EXPECT_EQ(siteFile("badLinks.txt"), url("/b.html") + "\n");
    EXPECT_EQ(siteFile("Test.vrLMP"),
              "<siteName>Test</siteName>\n<siteURL>" + home +
                  "</siteURL>\n<ignoreRobotFile>NO</ignoreRobotFile>\n<pagesFound>3</pagesFound>\n"
                  "<totalLinks>8</totalLinks>\n<pagesUsed>2</pagesUsed>");

    const SiteDetailsFields& details = siteView.state().details;
    EXPECT_EQ(details.totalLinksFound, "8");
    EXPECT_EQ(details.pagesFound, "3");
    EXPECT_EQ(details.brokenLinks, "1");
    EXPECT_EQ(details.linksScanned, "2");
    EXPECT_TRUE(siteView.state().brokenLinksButtonShown);
    EXPECT_TRUE(siteView.state().scanButtonEnabled);
    EXPECT_EQ(process.vrlmpBadLinkArray, std::vector<std::string>{url("/b.html")});
    EXPECT_EQ(scanView.scannedLinks, home + "\n" + url("/a.html") + "\n" + url("/b.html") + "\n");
    EXPECT_EQ(sheet.lastProgress, (ScanProgress{0, 0, 0, 5, 1}));
    EXPECT_EQ(sheet.lastTotalLinks, 0);
    EXPECT_TRUE(alerts.shown.empty());
}

TEST_F(Scan, EachPageIsRequestedInTheOrderTheCrawlNeedsIt) {
    servePage("/", {"<html><head><title>Only</title></head><body></body></html>"});
    addSite();
    scan();
    EXPECT_EQ(requestLog(), (std::vector<std::string>{
                                "GET /",             // start-URL probe
                                "GET //robots.txt",  // robots, with its double slash
                                "GET /", "GET /",    // title: as text, then as bytes
                                "GET /", "GET /",    // the page, twice
                                "HEAD /",            // last-modified date
                                "GET /",             // once more as text
                            }));
    EXPECT_EQ(siteFile("sitemap1c.html"),
              head() + "\n" + pageTitleLine(url("/"), 0, "Only") + kClearer + kOneColumnEnd);
    EXPECT_EQ(siteFile("sitemap3c.html"), tableHead() + kRowOpening +
                                              pageTitleLine(url("/"), 0, "Only") + kCellSeparator +
                                              std::string(layoutmarkup::kTwoPaddedCellsEnd));
    EXPECT_FALSE(pathExists(home.dataRoot() + "/Test/badLinks.txt"));
}

TEST_F(Scan, BrokenNonHtmlAndListingPagesAreToldApart) {
    servePage("/", {R"(<title>Home</title><a href="gone.html">1</a><a href="r.php?f=pdf">2</a>)"
                    R"(<a href="files/">3</a>)"});
    servePage("/r.php?f=pdf", {"%PDF-1.4", "application/pdf"});
    servePage("/files/", {"<title>Index of /files</title><a href=\"x.html\">x</a>"});
    addSite();
    scan();
    EXPECT_EQ(process.vrlmpBadLinkArray,
              (std::vector<std::string>{url("/gone.html"), url("/r.php?f=pdf")}));
    EXPECT_EQ(siteFile("badLinks.txt"), url("/gone.html") + "\n" + url("/r.php?f=pdf") + "\n");
    EXPECT_EQ(siteFile("sitemap1cpo.html"),
              head() + "\n" + pageTitleLine(url("/"), 0, "Home") + kClearer + kOneColumnEnd)
        << "only the good page is mapped";
    EXPECT_EQ(siteView.state().details.linksScanned, "2") << "4 dealt with, 2 broken";
    EXPECT_EQ(siteView.state().details.pagesFound, "4");
}

TEST_F(Scan, AnUnparsableBodyLeavesItsTitleForTheNextBlock) {
    servePage("/", {R"(<title>Home</title><a href="empty.html">E</a><a href="c.html">C</a>)"});
    servePage("/empty.html", {""});
    servePage("/c.html", {R"(<title>C</title><a href="/">Back</a>)"});
    addSite();
    scan();
    const std::string blockHome = pageTitleLine(url("/"), 0, "Home") +
                                  linkLine(url("/empty.html"), 2, "E") +
                                  linkLine(url("/c.html"), 3, "C");
    // The empty page keeps the counter where the last page left it and shares it with C.
    const std::string titleEmpty =
        pageTitleLine(url("/empty.html"), 3, "Could not find page title");
    const std::string blockC =
        titleEmpty + pageTitleLine(url("/c.html"), 3, "C") + linkLine(url("/"), 5, "Back");
    EXPECT_EQ(siteFile("sitemap1c.html"),
              head() + "\n" + blockHome + kClearer + "\n" + blockC + kClearer + kOneColumnEnd);
    // The pages-only tables hold three items but are closed by the all-links counters.
    EXPECT_EQ(siteFile("sitemap2cpo.html"),
              tableHead() + kRowOpening + pageTitleLine(url("/"), 0, "Home") + kCellSeparator +
                  titleEmpty + kRowClosing + kRowOpening + pageTitleLine(url("/c.html"), 3, "C") +
                  kCellSeparator + kTableEnd);
    EXPECT_EQ(siteView.state().details.totalLinksFound, "5");
}

// cpp-httplib refuses request targets with several "?", so these pages come from a bare
// server that answers everything with one page.
std::unique_ptr<test::RawHttpServer> oddQueryServer() {
    return std::make_unique<test::RawHttpServer>([](int connection, const std::string&,
                                                    const std::atomic<bool>&) {
        test::RawHttpServer::send(
            connection, test::RawHttpServer::response(
                            "200 OK", "text/html", "<title>Odd</title><a href=\"p.html\">P</a>"));
    });
}

// With one connection or eight, the warning comes once and its answer decides.
TEST_F(Scan, FourQueryMarksWarnOnceAndTheAnswerDecides) {
    const auto odd = oddQueryServer();
    addSiteAt(odd->url("/index.php?a=1?b=2?c=3?d=4"));
    for (const int connections : {1, 8}) {
        CrawlSettings settings;
        settings.setConnections(connections);
        ASSERT_TRUE(writeCrawlSettings(home.dataRoot() + "/Test", settings));
        for (const int answer : {kDefaultButtonCode, kOtherButtonCode}) {
            alerts.shown.clear();
            alerts.answers.push_back(answer);
            scan();
            ASSERT_EQ(alerts.shown.size(), 1U);
            const Alert& warning = alerts.shown[0];
            EXPECT_EQ(warning.title, "There may be an issue with the site you are scanning.");
            EXPECT_EQ(warning.message,
                      "URL parameters have been found containing multiple ?s which may be "
                      "invalid.");
            EXPECT_EQ(warning.defaultButton, "Continue");
            EXPECT_EQ(warning.otherButton, "Cancel Scan");
            const bool goOn = answer == kDefaultButtonCode;
            EXPECT_EQ(siteView.state().details.pagesFound, goOn ? "2" : "1");
            EXPECT_EQ(siteView.state().details.linksScanned, goOn ? "2" : "0")
                << "p.html answers as well";
        }
        // Cancelled before the page: every file closed with nothing in it.
        EXPECT_EQ(siteFile("sitemap1c.html"), head() + kOneColumnEnd);
        EXPECT_EQ(siteFile("sitemap.xml"), std::string(xmlSitemapHeader()) + "\n</urlset>");
        EXPECT_EQ(siteFile("sitemap2c.html"), tableHead() + kTableEnd);
    }
}

TEST_F(Scan, CancelInTheMiddleOfAPageKeepsWhatWasSeen) {
    servePage("/", {R"(<title>Home</title><a href="a.html">A</a><a href="b.html">B</a>)"});
    servePage("/a.html", {"<title>A</title>"});
    addSite();
    driver.setViewRefreshInterval(std::chrono::milliseconds(0));
    scanView.onScannedLinkAppended = [this] { driver.cancelScan(); };
    scan();
    EXPECT_EQ(siteFile("sitemap1c.html"), head() + "\n" + pageTitleLine(url("/"), 0, "Home") +
                                              linkLine(url("/a.html"), 2, "A") + kClearer +
                                              kOneColumnEnd);
    EXPECT_EQ(siteView.state().details.pagesFound, "2");
    EXPECT_EQ(siteView.state().details.linksScanned, "1");
    EXPECT_EQ(siteView.state().details.totalLinksFound, "3")
        << "the anchor that saw the stop counts";
    const auto log = requestLog();
    EXPECT_EQ(std::count(log.begin(), log.end(), "GET /a.html"), 2)
        << "the next page's title is fetched before the stop is seen";
}

TEST_F(Scan, ARedirectingStartUrlIsRefused) {
    servePage("/old/", {"", "text/html", 301, "", "/gone/"});
    addSite("/old/");
    scan();
    ASSERT_EQ(alerts.shown.size(), 1U);
    EXPECT_EQ(alerts.shown[0].title, "The Site URL Could Not Be Reached");
    EXPECT_EQ(alerts.shown[0].message, "Error Code: 404 - Not Found");
    EXPECT_EQ(process.vrlmpBadLinkReasonArray, std::vector<std::string>{"301 - Moved Permanently"});
    EXPECT_EQ(siteFile("sitemap1c.html"), head()) << "the headers stay as written";
    EXPECT_EQ(siteFile("sitemap.xml"), std::string(xmlSitemapHeader()));
    EXPECT_TRUE(siteView.state().scanButtonEnabled);
    EXPECT_FALSE(driver.isScanning());
}

TEST_F(Scan, ANotAnsweringStartUrlShowsCodeZeroAndTheReason) {
    addSiteAt("http://127.0.0.1:1/");
    scan();
    ASSERT_EQ(alerts.shown.size(), 1U);
    EXPECT_EQ(alerts.shown[0].message, "Error Code: 0 - \nConnection refused");
    EXPECT_TRUE(process.vrlmpBadLinkReasonArray.empty()) << "no answer, no reason recorded";
}

TEST_F(Scan, RobotsRulesAreObeyedUnlessIgnoredAndFiltersAlwaysApply) {
    servePage("/",
              {R"(<title>Home</title><a href="private/p.html">P</a><a href="tmp.html">T</a>)"});
    servePage("//robots.txt", {"User-agent: *\nDisallow: /private\n", "text/plain"});
    servePage("/private/p.html", {"<title>Private</title>"});
    servePage("/tmp.html", {"<title>Tmp</title>"});
    addSite();
    writeFileAtomically(home.dataRoot() + "/Test/filters.zplp", "TMP\n");
    siteView.deselectAll();
    siteView.selectRow(0);
    process.vrlmpFiltersArray = {"TMP"};

    scan();
    EXPECT_EQ(siteView.state().details.pagesFound, "1");

    siteView.ignoreRobotsAction(true);
    scan();
    EXPECT_EQ(siteView.state().details.pagesFound, "2");
    EXPECT_EQ(scanView.scannedLinks, url("/") + "\n" + url("/private/p.html") + "\n");
}

TEST_F(Scan, ARescanWithoutBrokenLinksEmptiesTheList) {
    servePage("/", {R"(<title>Home</title><a href="gone.html">G</a>)"});
    addSite();
    scan();
    EXPECT_EQ(siteFile("badLinks.txt"), url("/gone.html") + "\n");
    servePage("/gone.html", {"<title>Back</title>"});
    scan();
    EXPECT_EQ(siteFile("badLinks.txt"), "");
    EXPECT_FALSE(siteView.state().brokenLinksButtonShown);
}

TEST_F(Scan, TheFilterDrawerIsClosedForTheScanAndReopenedAfter) {
    servePage("/", {"<title>Home</title>"});
    addSite();
    siteView.filterAddPanel();
    ASSERT_TRUE(siteView.state().filterDrawerOpen);
    bool openWhileScanning = true;
    sheet.onEnded = [&] { loop.stop(); };
    scanView.onStateChanged = [&](const ScanViewState& state) {
        if (!state.scanButtonEnabled && state.filterDrawerOpen) {
            openWhileScanning = true;
        } else if (!state.scanButtonEnabled) {
            openWhileScanning = false;
        }
    };
    scan();
    EXPECT_FALSE(openWhileScanning);
    EXPECT_TRUE(siteView.state().filterDrawerOpen);
}

}  // namespace
}  // namespace loomcrest
