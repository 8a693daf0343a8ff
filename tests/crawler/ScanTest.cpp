#include <gtest/gtest.h>

#include <chrono>
#include <tuple>

#include "crawler/CrawlSettingsFile.h"
#include "crawler/LinkExplanations.h"
#include "platform/Http.h"
#include "sitemap/BrokenLinkDetails.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/LayoutMarkup.h"
#include "sitemap/SitemapFiles.h"
#include "sitemap/XmlSitemapFormat.h"
#include "support/RawHttpServer.h"
#include "support/ScanFixture.h"
#include "support/TextChecks.h"

namespace loomcrest {
namespace {

const std::string kClearer(layoutmarkup::kClearer);
const std::string kRowOpening(layoutmarkup::kRowOpening);
const std::string kCellSeparator(layoutmarkup::kCellSeparator);
const std::string kRowClosing(layoutmarkup::kRowClosing);
const std::string kOneColumnEnd(layoutmarkup::kOneColumnEnd);
const std::string kTableEnd(layoutmarkup::kTableEnd);
const std::string kPaddedRowEnd(layoutmarkup::kPaddedRowEnd);

const std::string kHead(htmlSitemapHead());
const std::string kTableHead = kHead + std::string(kTableOpening);

using Scan = test::ScanFixture;

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

    // The pages-only layouts hold the title lines, the all-links ones the page blocks.
    for (const auto& [kind, first, second] :
         {std::tuple{"cpo", titleHome, titleA}, std::tuple{"c", blockHome, blockA}}) {
        const std::string row = kRowOpening + first + kCellSeparator + second;
        EXPECT_EQ(siteFile("sitemap1" + std::string(kind) + ".html"),
                  kHead + "\n" + first + kClearer + "\n" + second + kClearer + kOneColumnEnd);
        EXPECT_EQ(siteFile("sitemap2" + std::string(kind) + ".html"),
                  kTableHead + row + kRowClosing + kTableEnd);
        EXPECT_EQ(siteFile("sitemap3" + std::string(kind) + ".html"),
                  kTableHead + row + kCellSeparator + kPaddedRowEnd);
    }
    EXPECT_EQ(siteFile("sitemap.xml"), std::string(xmlSitemapHeader()) +
                                           xmlSitemapEntry(home, "2024-05-17") +
                                           xmlSitemapEntry(url("/a.html"), "") + "\n</urlset>");
    EXPECT_EQ(siteFile("badLinks.txt"), url("/b.html") + "\n");
    EXPECT_EQ(siteFile("Test.vrLMP"),
              "<siteName>Test</siteName>\n<siteURL>" + home +
                  "</siteURL>\n<ignoreRobotFile>NO</ignoreRobotFile>\n<pagesFound>3</pagesFound>\n"
                  "<totalLinks>8</totalLinks>\n<pagesUsed>2</pagesUsed>");

    EXPECT_EQ(figures(), "links 8, pages 3, scanned 2, broken 1");
    EXPECT_TRUE(siteView.state().brokenLinksButtonShown);
    EXPECT_EQ(scanView.scannedLinks, home + "\n" + url("/a.html") + "\n" + url("/b.html") + "\n");
    EXPECT_EQ(sheet.lastTotalLinks, 0);
    EXPECT_TRUE(alerts.shown.empty());
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
              kHead + "\n" + blockHome + kClearer + "\n" + blockC + kClearer + kOneColumnEnd);
    // The pages-only tables hold three items but are closed by the all-links counters.
    EXPECT_EQ(siteFile("sitemap2cpo.html"),
              kTableHead + kRowOpening + pageTitleLine(url("/"), 0, "Home") + kCellSeparator +
                  titleEmpty + kRowClosing + kRowOpening + pageTitleLine(url("/c.html"), 3, "C") +
                  kCellSeparator + kTableEnd);
    EXPECT_EQ(siteView.state().details.totalLinksFound, "5");
}

TEST_F(Scan, CancelInTheMiddleOfAPageKeepsWhatWasSeen) {
    servePage("/", {R"(<title>Home</title><a href="a.html">A</a><a href="b.html">B</a>)"});
    servePage("/a.html", {"<title>A</title>"});
    addSite();
    driver.setViewRefreshInterval(std::chrono::milliseconds(0));
    scanView.onScannedLinkAppended = [this] { driver.cancelScan(); };
    scan();
    EXPECT_EQ(siteFile("sitemap1c.html"), kHead + "\n" + pageTitleLine(url("/"), 0, "Home") +
                                              linkLine(url("/a.html"), 2, "A") + kClearer +
                                              kOneColumnEnd);
    EXPECT_EQ(figures(), "links 3, pages 2, scanned 1, broken 0")
        << "the anchor that saw the stop counts";
    const auto log = requestLog();
    EXPECT_EQ(std::count(log.begin(), log.end(), "GET /a.html"), 2)
        << "the next page's title is fetched before the stop is seen";
}

// Obeying the rules, and the filters with them, is shown by the explanation of skipped links.
TEST_F(Scan, TheRobotsChoiceFiltersAndDrawerAreTakenAtTheStart) {
    servePage("/",
              {R"(<title>Home</title><a href="private/p.html">P</a><a href="tmp.html">T</a>)"});
    servePage("//robots.txt", {"User-agent: *\nDisallow: /private\n", "text/plain"});
    servePage("/private/p.html", {"<title>Private</title>"});
    servePage("/tmp.html", {"<title>Tmp</title>"});
    addSite();
    siteView.ignoreRobotsAction(true);
    siteView.filterAddPanel();
    ASSERT_TRUE(siteView.state().filterDrawerOpen);
    process.vrlmpFiltersArray = {"tmp"};
    driver.setViewRefreshInterval(std::chrono::milliseconds(0));
    // The window changes its list while the crawl runs (another site selected, a filter
    // deleted); the crawl goes on with what it started with.
    scanView.onScannedLinkAppended = [this] { process.vrlmpFiltersArray.clear(); };
    bool openWhileScanning = true;
    scanView.onStateChanged = [&](const ScanViewState& state) {
        if (!state.scanButtonEnabled) {
            openWhileScanning = state.filterDrawerOpen;
        }
    };
    scan();
    EXPECT_EQ(scanView.scannedLinks, url("/") + "\n" + url("/private/p.html") + "\n");
    EXPECT_FALSE(openWhileScanning) << "the drawer is closed for the scan";
    EXPECT_TRUE(siteView.state().filterDrawerOpen) << "and reopened after";
}

// Every answer from 400 on is broken; a rescan without broken pages leaves the list empty and
// the details their header alone.
TEST_F(Scan, EveryAnswerFrom400OnIsBroken) {
    servePage("/", {R"(<title>Home</title><a href="ok.html">1</a><a href="bad.html">2</a>)"
                    R"(<a href="gone.html">3</a>)"});
    servePage("/ok.html", {"<title>OK</title>", "text/html", 226});
    servePage("/bad.html", {"<title>Bad</title>", "text/html", 400});
    servePage("/gone.html", {"<title>Gone</title>", "text/html", 410});
    addSite();
    for (const bool fetchOnce : {false, true}) {
        CrawlSettings settings;
        settings.setFetchOnce(fetchOnce);
        useSettings(settings);
        scan();
        EXPECT_EQ(process.vrlmpBadLinkArray,
                  (std::vector<std::string>{url("/bad.html"), url("/gone.html")}))
            << fetchOnce;
    }
    servePage("/bad.html", {"<title>Bad</title>"});
    servePage("/gone.html", {"<title>Back</title>"});
    scan();
    EXPECT_EQ(siteFile("badLinks.txt"), "");
    EXPECT_EQ(siteFile("brokenLinks.tsv"), "URL\tStatus\tFound on\tLink text\tLinks\n");
    EXPECT_FALSE(siteView.state().brokenLinksButtonShown);

    // Details of another list (an older scan, a list restored without them) are not used.
    const std::string folder = home.dataRoot() + "/Test";
    writeFileAtomically(folder + "/brokenLinks.tsv",
                        "URL\tStatus\tFound on\tLink text\tLinks\nhttp://h/x\t404 - Not Found\t"
                        "http://h/\tX\t2\n");
    const BrokenLinkReport other = readBrokenLinkReport(folder, {"http://h/y"});
    EXPECT_FALSE(other.complete);
    EXPECT_EQ(other.rows, (std::vector<BrokenLinkDetail>{{"http://h/y", "", "", "", 0}}));
    EXPECT_EQ(statusCodeOf("Connection refused"), 0);
    EXPECT_EQ(brokenLinkDetailsTsv({{"a\tb", "s", "p\nq", "t\r", 1}}),
              "URL\tStatus\tFound on\tLink text\tLinks\na b\ts\tp q\tt \t1\n");
}

TEST_F(Scan, TheBarIsSetOnlyOnceTwoPagesAreListed) {
    driver.setViewRefreshInterval(std::chrono::milliseconds(0));  // every figure is shown
    servePage("/", {"<title>Only</title>"});
    addSite();
    scan();
    // With a single page listed the bar keeps the figures it rests at.
    EXPECT_EQ(sheet.progressShown,
              (std::vector<ScanProgress>{{0, 1, 0, 5, 1}, {0, 1, 0, 5, 1}, {0, 0, 0, 5, 1}}));

    servePage("/", {R"(<title>Home</title><a href="a.html">A</a>)"});
    servePage("/a.html", {"<title>A</title>"});
    sheet.progressShown.clear();
    scan();
    EXPECT_EQ(
        sheet.progressShown,
        (std::vector<ScanProgress>{
            {1, 0, 0, 5, 1}, {1, 1, 0, 2, 1}, {0, 2, 0, 2, 2}, {0, 2, 0, 2, 2}, {0, 0, 0, 5, 1}}));
}

TEST_F(Scan, EveryBrokenPageGetsItsStatusFirstReferrerAndLinkCount) {
    // In the site by its host-path prefix, yet fetched from a port nothing listens on.
    const std::string closed = url("@127.0.0.1:1/closed.html");
    servePage("/", {"<title>Home</title><a href=\"a.html\">A</a><a href=\"gone.html\">Gone</a>"
                    "<a href=\"error.html\">Error</a><a href=\"" +
                    closed +
                    "\">Closed</a><a href=\"loop.html\">Loop</a>"
                    "<a href=\"image.html\">Image</a><a href=\"files/\">Files</a>"});
    servePage("/a.html", {"<title>A</title><a href=\"gone.html\">Gone again</a>"
                          "<a href=\"/gone.html\">Gone once more</a><a href=\"/\">Home</a>"
                          "<a href=\"deep.html\">Tief \xC3\xBC</a>"});
    servePage("/error.html", {"<title>Oops</title>", "text/html", 500});
    servePage("/loop.html", {"", "text/html", 302, {}, "/loop.html"});
    servePage("/image.html", {"PNG", "image/png"});
    servePage("/files/", {"<title>Index of /files</title><a href=\"x.html\">x</a>"});
    addSite();
    test::writeFile(home.dataRoot() + "/Test/crawl.json", "{connections: 8}");
    scan();
    ASSERT_EQ(alerts.shown.size(), 1U);
    EXPECT_EQ(alerts.shown[0].title, "The Crawl Settings Could Not Be Read");

    const std::vector<BrokenLinkDetail> rows = {
        {url("/gone.html"), "404 - Not Found", url("/"), "Gone", 3},
        {url("/error.html"), "500 - Internal Server Error", url("/"), "Error", 1},
        {closed, "Connection refused", url("/"), "Closed", 1},
        {url("/loop.html"), "Too many redirects", url("/"), "Loop", 1},
        {url("/image.html"), "200 - OK (image/png, not text/html)", url("/"), "Image", 1},
        {url("/deep.html"), "404 - Not Found", url("/a.html"), "Tief \xC3\xBC", 1},
    };
    std::string table = "URL\tStatus\tFound on\tLink text\tLinks\n";
    std::string plainList;  // stays as it was
    for (const BrokenLinkDetail& row : rows) {
        table += row.url + "\t" + row.status + "\t" + row.foundOn + "\t" + row.linkText + "\t" +
                 std::to_string(row.links) + "\n";
        plainList += row.url + "\n";
    }
    EXPECT_EQ(siteFile("brokenLinks.tsv"), table);
    EXPECT_EQ(siteFile("badLinks.txt"), plainList);
}

TEST_F(Scan, TheExplanationNamesEveryLinkNotQueuedWithItsReason) {
    const std::string twin = "http://www." + url("/dir/index.html").substr(7);
    const std::vector<std::pair<std::string, std::string>> links = {
        {"dir/index.html", ""},
        {"folder/", ""},
        {"", "empty"},
        {"a page.html", "not a URL"},
        {"doc.pdf", "extension"},
        {"dir/", "folder of a queued index page"},
        {"skip.html", "filter \"SKIP\""},
        {"private/x.html", "robots rule \"/private\""},
        {"mailto:me@example.org", "other scheme"},
        {"http://other.org/x.html", "off-site host"},
        {"p.php?a=1?b=2", "too many \"?\""},
        {"dir/?a=1", "\"?\" without a page name"},
        {"dir/index.html", "duplicate"},
        {"folder/index.html", "index page of a queued folder"},
        {twin, "www twin"},
    };
    std::string page = "<title>Home</title>";
    std::string expected = "Page\tLink\tReason\n";
    for (const auto& [href, reason] : links) {
        page += "<a href=\"" + href + "\">x</a>";
        if (!reason.empty()) {
            expected += url("/") + "\t" + href + "\t" + reason + "\n";
        }
    }
    servePage("/", {page});
    servePage("//robots.txt", {"Disallow: /private\n", "text/plain"});
    addSite();
    process.vrlmpFiltersArray = {"SKIP"};

    const std::string path = home.path() + "/explain.tsv";
    LinkExplanations explanations;
    ASSERT_TRUE(explanations.open(path));
    driver.explainSkippedLinks(&explanations);
    scan();
    EXPECT_FALSE(pathExists(path)) << "the file appears whole, when finished";
    ASSERT_TRUE(explanations.finish());
    EXPECT_EQ(test::fileContents(path), expected);
}

using test::RawHttpServer;
using namespace std::chrono_literals;

constexpr int kManyAnchors = 100000;

// Built once: the page is asked for six times, and a sanitised build is slow to build it.
const std::string& manyAnchors() {
    static const std::string page = [] {
        std::string text = "<title>Many</title>";
        for (int i = 0; i < kManyAnchors; ++i) {
            text += "<a href=\"http://elsewhere.example/" + std::to_string(i % 10) + "\">x</a>";
        }
        return text;
    }();
    return page;
}

std::string binaryNoise() {
    std::string noise;
    for (int i = 0; i < 5000; ++i) {
        noise += static_cast<char>((i * 7919) % 256);
    }
    return noise;
}

// Long enough for the large page even in a sanitised build, short enough to keep the silent
// and dribbling pages quick. ThreadSanitizer slows the parse of the large page several times.
#if defined(__SANITIZE_THREAD__)
constexpr auto kHostileTimeout = 3000ms;
#else
constexpr auto kHostileTimeout = 1000ms;
#endif

TEST_F(Scan, HostileServersNeitherHangNorCrashTheScan) {
    http::setTimeoutLimit(kHostileTimeout);
    RawHttpServer hostile(RawHttpServer::Routes{
        {"/",
         RawHttpServer::page(
             R"(<title>Home</title><a href="silent.html">1</a><a href="slow.html">2</a>)"
             R"(<a href="endless.html">3</a><a href="binary.html">4</a>)"
             R"(<a href="latin1.html">5</a><a href="loop.html">6</a><a href="many.html">7</a>)")},
        {"/silent.html", RawHttpServer::silent()},
        {"/slow.html", RawHttpServer::dribbling()},
        {"/endless.html", RawHttpServer::endless()},
        {"/binary.html", RawHttpServer::page(binaryNoise())},
        {"/latin1.html",
         RawHttpServer::page("<title>Caf\xe9</title><a href=\"/\">\xe0 la maison</a>")},
        {"/loop.html", RawHttpServer::redirect("302 Found", "/loop.html")},
        {"/many.html", RawHttpServer::page(manyAnchors())},
    });
    addSiteAt(hostile.url("/"));
    scan();
    http::setTimeoutLimit(0ms);

    EXPECT_EQ(process.vrlmpBadLinkArray,
              (std::vector<std::string>{hostile.url("/silent.html"), hostile.url("/slow.html"),
                                        hostile.url("/endless.html"), hostile.url("/loop.html")}));
    EXPECT_EQ(figures(), "links " + std::to_string(driver.scanner().totLinks) +
                             ", pages 8, scanned 4, broken 4");
    EXPECT_GT(driver.scanner().totLinks, kManyAnchors);
    for (const char* file : {"sitemap1c.html", "sitemap2c.html", "sitemap3c.html",
                             "sitemap1cpo.html", "sitemap2cpo.html", "sitemap3cpo.html"}) {
        EXPECT_TRUE(siteFile(file).ends_with("</body>\n</html>")) << file;
    }
    EXPECT_TRUE(siteFile("sitemap.xml").ends_with("\n</urlset>"));
    EXPECT_TRUE(test::contains(siteFile("sitemap1c.html"), "elsewhere.example/9---LINKID:"));
}

}  // namespace
}  // namespace loomcrest
