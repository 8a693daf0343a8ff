#include <gtest/gtest.h>

#include "CommandSteps.h"
#include "platform/Text.h"
#include "sitemap/SitemapFiles.h"
#include "sitemap/XmlSitemapFormat.h"
#include "support/Golden.h"
#include "support/RunCommand.h"
#include "support/TextChecks.h"

// `export` and `validate`.
namespace loomcrest {
namespace {

using namespace test;

class ExportCommand : public CommandLineTest {
protected:
    void SetUp() override {
        ASSERT_EQ(run({"add", "Shop", "http://h.example/shop/index.html"}).exitCode, 0);
    }
    std::string site(const std::string& file) const { return siteFile("Shop", file); }
    std::string sitemapOf(const std::string& entries) const {
        return std::string(xmlSitemapHeader()) + entries + "\n</urlset>";
    }
};

TEST_F(ExportCommand, WritesTheChosenFileOrRefuses) {
    ASSERT_EQ(run({"demo"}).exitCode, 0);
    const std::string out = home.path() + "/site-map.html";
    expectSteps({
        quiet({"export", "Demo", "2cpo", out}),
        quiet({"export", "Demo", "broken-txt", home.path() + "/b.txt"}),
        refused({"export", "Shop", "xml", home.path() + "/n.xml"},
                "The sitemap you are trying to export could not be found, please make sure you "
                "have scanned your site before exporting.\n\n"),
        misused({"export", "Demo", "4c", out}),
    });
    const std::string exported = fileContents(out);
    EXPECT_FALSE(contains(exported, "LINKID"));
    EXPECT_TRUE(contains(exported, "<div class=\"zplPageTitle\"><a href=\"http://127.0.0.1:"));
    EXPECT_TRUE(fileContents(home.path() + "/b.txt").ends_with("/spring-sale.html\n\n"));
}

TEST_F(ExportCommand, ValidateNamesEveryFaultWithItsLineAndReadsTheFileNamed) {
    writeFile(site("sitemap.xml"), golden("faulty-sitemap.xml"));
    writeFile(home.path() + "/warned.xml",
              sitemapOf(xmlSitemapEntry("http://h.example/shop/", "")));
    expectSteps({
        {{"validate", "Shop"}, 1, golden("faulty-sitemap-problems.txt")},
        {{"validate", "Shop", home.path() + "/warned.xml"},
         0,
         "Line 10: Warning: The last-modified date is empty; the export leaves it out\n"
         "No problems, 1 warning\n"},
        refused({"validate", "Shop", home.path() + "/none.xml"},
                "The sitemap \"" + home.path() +
                    "/none.xml\" could not be read: No such file or directory.\n"),
    });
}

TEST_F(ExportCommand, ABareAmpersandIsExportedEscapedOnlyWhenAsked) {
    const std::string entry =
        "\n\t<url>\n\t\t<loc>http://h.example/shop/?a&b</loc>"
        "\n\t\t<lastmod>2024-05-17</lastmod>\n\t</url>";
    writeFile(site("sitemap.xml"), sitemapOf(entry));
    const std::string out = home.path() + "/out.xml";
    expectSteps(
        {refused({"export", "Shop", "xml", out},
                 "The XML sitemap is not well formed: line 9 holds a bare \"&\".\n"
                 "Export it with every bare \"&\" written as \"&amp;\"? The site's own "
                 "sitemap.xml stays as it is.\nNothing was exported. With --fix-ampersands it "
                 "is exported with every bare \"&\" written as \"&amp;\".\n")});
    EXPECT_FALSE(std::filesystem::exists(out));
    expectSteps({quiet({"export", "Shop", "xml", out, "--fix-ampersands"})});
    EXPECT_EQ(fileContents(out), sitemapOf(replaceAll(entry, "&", "&amp;")));
    EXPECT_EQ(fileContents(site("sitemap.xml")), sitemapOf(entry));
}

TEST_F(ExportCommand, ASplitAndCompressedSitemapValidates) {
    std::string entries;
    for (int i = 0; i <= 50000; ++i) {
        entries += xmlSitemapEntry("http://h.example/shop/p" + std::to_string(i) + ".html",
                                   i % 2 == 0 ? "" : "2024-05-17");
    }
    writeFile(site("sitemap.xml"), sitemapOf(entries));
    const std::string pub = home.path() + "/pub/";
    std::filesystem::create_directories(pub);
    expectSteps({
        {{"export", "Shop", "xml", pub + "sitemap.xml", "--gzip"},
         0,
         "",
         "The XML sitemap was exported.\n"
         "\"sitemap.xml\" is a sitemap index of 2 parts beside it, \"sitemap-1.xml.gz\" to "
         "\"sitemap-2.xml.gz\": one file may hold at most 50,000 URLs and 50 MB.\n"
         "25,001 empty last-modified dates were left out: search engines take an empty date as "
         "an invalid one.\n"},
        {{"validate", "Shop", pub + "sitemap.xml"}, 0, "No problems\n"},
        {{"validate", "Shop", pub + "sitemap-2.xml.gz"}, 0, "No problems\n"},
    });
    EXPECT_TRUE(contains(fileContents(pub + "sitemap.xml"),
                         "<loc>http://h.example/shop/sitemap-2.xml.gz</loc>"));
}

// Every reason an export can fail for is the exporter's own test; here one reaches the user.
TEST_F(ExportCommand, AnExportThatCannotBeWrittenSaysWhyAndExitsOne) {
    writeFile(site("sitemap3c.html"), "<html>");
    const std::string missing = home.path() + "/missing/sitemap.html";
    expectSteps({refused(
        {"export", "Shop", "3c", missing},
        "The export could not be written to \"" + missing + "\".\nNo such file or directory.\n")});
    EXPECT_FALSE(std::filesystem::exists(home.path() + "/missing"));
}

}  // namespace
}  // namespace loomcrest
