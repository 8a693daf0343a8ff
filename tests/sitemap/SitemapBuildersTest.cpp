#include <gtest/gtest.h>

#include "app/ProcessState.h"
#include "crawler/SiteScanner.h"
#include "platform/FileSystem.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/XmlSitemapFormat.h"
#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

using test::fileContents;
using test::TemporaryHome;
using test::writeFile;

constexpr const char* kXmlStart = "<urlset>";

class SitemapBuilders : public testing::Test {
protected:
    void SetUp() override {
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
    std::string folder;
    ProcessState process;
    SiteScanner scanner{process};
};

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
