#include <gtest/gtest.h>

#include "crawler/LinkExplanations.h"
#include "sitemap/BrokenLinkDetails.h"
#include "support/ScanFixture.h"

namespace loomcrest {
namespace {

using test::TestPage;

class BrokenLinkDetailsScan : public test::ScanFixture {
protected:
    std::string url(const std::string& path) const { return server.url(path); }
    // In the site by its host-path prefix, yet fetched from a port nothing listens on.
    std::string closedPortUrl() const { return url("@127.0.0.1:1/closed.html"); }
};

TEST_F(BrokenLinkDetailsScan, EveryBrokenPageGetsItsStatusFirstReferrerAndLinkCount) {
    servePage("/", {"<title>Home</title><a href=\"a.html\">A</a><a href=\"gone.html\">Gone</a>"
                    "<a href=\"error.html\">Error</a><a href=\"" +
                    closedPortUrl() +
                    "\">Closed</a><a href=\"loop.html\">Loop</a>"
                    "<a href=\"image.html\">Image</a>"});
    servePage("/a.html", {"<title>A</title><a href=\"gone.html\">Gone again</a>"
                          "<a href=\"/gone.html\">Gone once more</a><a href=\"/\">Home</a>"
                          "<a href=\"deep.html\">Tief \xC3\xBC</a>"});
    servePage("/error.html", {"<title>Oops</title>", "text/html", 500});
    servePage("/loop.html", {"", "text/html", 302, {}, "/loop.html"});
    servePage("/image.html", {"PNG", "image/png"});
    addSite();
    scan();

    const std::string home = url("/");
    EXPECT_EQ(
        siteFile("brokenLinks.tsv"),
        "URL\tStatus\tFound on\tLink text\tLinks\n" + url("/gone.html") + "\t404 - Not Found\t" +
            home + "\tGone\t3\n" + url("/error.html") + "\t500 - Internal Server Error\t" + home +
            "\tError\t1\n" + closedPortUrl() + "\tConnection refused\t" + home + "\tClosed\t1\n" +
            url("/loop.html") + "\tToo many redirects\t" + home + "\tLoop\t1\n" +
            url("/image.html") + "\t200 - OK (image/png, not text/html)\t" + home + "\tImage\t1\n" +
            url("/deep.html") + "\t404 - Not Found\t" + url("/a.html") + "\tTief \xC3\xBC\t1\n");
    EXPECT_EQ(siteFile("badLinks.txt"), url("/gone.html") + "\n" + url("/error.html") + "\n" +
                                            closedPortUrl() + "\n" + url("/loop.html") + "\n" +
                                            url("/image.html") + "\n" + url("/deep.html") + "\n")
        << "the plain list stays as it was";
}

TEST_F(BrokenLinkDetailsScan, ACleanScanLeavesTheHeaderAloneAndReadersCheckTheList) {
    servePage("/", {"<title>Home</title>"});
    addSite();
    scan();
    EXPECT_EQ(siteFile("brokenLinks.tsv"), "URL\tStatus\tFound on\tLink text\tLinks\n");

    const std::string folder = home.dataRoot() + "/Test";
    writeFileAtomically(folder + "/brokenLinks.tsv",
                        "URL\tStatus\tFound on\tLink text\tLinks\nhttp://h/x\t404 - Not Found\t"
                        "http://h/\tX, \"y\"\t2\n");
    const BrokenLinkReport known = readBrokenLinkReport(folder, {"http://h/x"});
    ASSERT_TRUE(known.complete);
    EXPECT_EQ(known.rows, (std::vector<BrokenLinkDetail>{
                              {"http://h/x", "404 - Not Found", "http://h/", "X, \"y\"", 2}}));
    EXPECT_EQ(brokenLinkDetailsCsv(known.rows),
              "URL,Status,Found on,Link text,Links\r\n"
              "http://h/x,404 - Not Found,http://h/,\"X, \"\"y\"\"\",2\r\n");
    EXPECT_EQ(statusCodeOf(known.rows[0].status), 404);
    EXPECT_EQ(statusCodeOf("Connection refused"), 0);

    // Details of another list (an older scan, a list restored without them) are not used.
    const BrokenLinkReport other = readBrokenLinkReport(folder, {"http://h/y"});
    EXPECT_FALSE(other.complete);
    EXPECT_EQ(other.rows, (std::vector<BrokenLinkDetail>{{"http://h/y", "", "", "", 0}}));
    EXPECT_EQ(brokenLinkDetailsTsv({{"a\tb", "s", "p\nq", "t\r", 1}}),
              "URL\tStatus\tFound on\tLink text\tLinks\na b\ts\tp q\tt \t1\n");
}

TEST_F(BrokenLinkDetailsScan, TheExplanationNamesEveryLinkNotQueuedWithItsReason) {
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

}  // namespace
}  // namespace loomcrest
