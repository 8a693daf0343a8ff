#include <gtest/gtest.h>

#include "app/ProcessState.h"
#include "crawler/SiteScanner.h"
#include "platform/FileSystem.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/XmlSitemapFormat.h"
#include "support/TemporaryHome.h"
#include "support/TestServer.h"

namespace loomcrest {
namespace {

using test::fileContents;
using test::TemporaryHome;
using test::TestServer;
using test::writeFile;

constexpr const char* kXmlStart = "<urlset>";

class SitemapBuilders : public testing::Test {
protected:
    void SetUp() override {
        server.server().Get("/dated.html", [](const httplib::Request&, httplib::Response& res) {
            res.set_header("Last-Modified", "Fri, 17 May 2024 10:00:00 GMT");
            res.set_content("<html></html>", "text/html");
        });
        server.server().Get("/plain.html", [](const httplib::Request&, httplib::Response& res) {
            res.set_content("<html></html>", "text/html");
        });
        server.start();
        setenv("TZ", "UTC", 1);
        tzset();

        folder = home.path() + "/site";
        const std::string head(htmlSitemapHead());
        for (const char* name : {"sitemap1cpo.html", "sitemap1c.html"}) {
            writeFile(folder + "/" + name, head);
        }
        for (const char* name :
             {"sitemap2cpo.html", "sitemap3cpo.html", "sitemap2c.html", "sitemap3c.html"}) {
            writeFile(folder + "/" + name, head + std::string(kTableOpening));
        }
        writeFile(folder + "/sitemap.xml", kXmlStart);
        scanner.setSitemapFolder(folder);
    }

    std::string file(const std::string& name) const { return fileContents(folder + "/" + name); }

    TemporaryHome home;
    TestServer server;
    std::string folder;
    ProcessState process;
    SiteScanner scanner{process};
};

TEST_F(SitemapBuilders, PagesOnlyLayoutsAndXmlGrowPageByPage) {
    const std::string first = pageTitleLine(server.url("/dated.html"), 0, "One");
    const std::string second = pageTitleLine(server.url("/plain.html"), 3, "Two & more");
    scanner.buildPageTitleSitemap(first, server.url("/dated.html"));
    scanner.buildPageTitleSitemap(second, server.url("/plain.html"));

    const std::string head(htmlSitemapHead());
    const std::string open = "\n\t<tr valign=\"top\">\n\t\t<td>";
    const std::string next = "\n\t\t</td>\n\t\t<td>";
    const std::string close = "\n\t\t</td>\n\t</tr>";
    const std::string clearer = "\n<div class=\"clearer\">&nbsp;</div>";
    EXPECT_EQ(file("sitemap1cpo.html"), head + "\n" + first + clearer + "\n" + second + clearer);
    EXPECT_EQ(file("sitemap2cpo.html"),
              head + std::string(kTableOpening) + open + first + next + second + close);
    EXPECT_EQ(file("sitemap3cpo.html"),
              head + std::string(kTableOpening) + open + first + next + second + next);
    EXPECT_EQ(scanner.twoColCountPO, 0);
    EXPECT_EQ(scanner.threeColCountPO, 2);
    EXPECT_EQ(file("sitemap.xml"), std::string(kXmlStart) +
                                       xmlSitemapEntry(server.url("/dated.html"), "2024-05-17") +
                                       xmlSitemapEntry(server.url("/plain.html"), ""));
    EXPECT_EQ(file("sitemap1c.html"), head) << "the all-links layouts are not touched";
}

TEST_F(SitemapBuilders, AllLinksLayoutsTakeWholePageBlocks) {
    const std::string block = pageTitleLine("http://h/", 0, "Home") +
                              linkLine("http://h/a.html", 2, "A") +
                              linkLine("http://h/b.html", 3, "B");
    scanner.buildAllLinksSitemaps(block);
    const std::string head(htmlSitemapHead());
    EXPECT_EQ(file("sitemap1c.html"),
              head + "\n" + block + "\n<div class=\"clearer\">&nbsp;</div>");
    EXPECT_EQ(file("sitemap3c.html"), head + std::string(kTableOpening) +
                                          "\n\t<tr valign=\"top\">\n\t\t<td>" + block +
                                          "\n\t\t</td>\n\t\t<td>");
    EXPECT_EQ(scanner.twoColCountAP, 1);
    EXPECT_EQ(scanner.threeColCountAP, 1);
}

TEST_F(SitemapBuilders, EmptyOrMalformedBlocksAreDropped) {
    scanner.buildAllLinksSitemaps("");
    scanner.buildAllLinksSitemaps("caf\xe9");
    EXPECT_EQ(file("sitemap1c.html"), std::string(htmlSitemapHead()));
    EXPECT_EQ(scanner.twoColCountAP, 0);
}

TEST_F(SitemapBuilders, AFailedWriteIsKeptAndNothingIsAppendedAfterIt) {
    EXPECT_TRUE(scanner.sitemapWriteFailure().ok());
    (void)removeFile(folder + "/sitemap2cpo.html");
    scanner.buildPageTitleSitemap("X", "Not Found");
    scanner.buildAllLinksSitemaps("<div>block</div>");
    EXPECT_FALSE(pathExists(folder + "/sitemap2cpo.html")) << "a missing file is not made";
    EXPECT_EQ(scanner.sitemapWriteFailure().message(),
              folder + "/sitemap2cpo.html: No such file or directory");
    EXPECT_EQ(file("sitemap1cpo.html"), std::string(htmlSitemapHead()) + oneColumnPiece("X"));
    EXPECT_EQ(file("sitemap.xml"), kXmlStart);
    EXPECT_EQ(file("sitemap1c.html"), std::string(htmlSitemapHead()));
    EXPECT_EQ(scanner.twoColCountPO, 1) << "the counters move on";
    scanner.setSitemapFolder(folder);
    EXPECT_TRUE(scanner.sitemapWriteFailure().ok()) << "a new scan starts afresh";
}

}  // namespace
}  // namespace loomcrest
