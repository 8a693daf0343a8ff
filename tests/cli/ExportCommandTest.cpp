#include <gtest/gtest.h>

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

// What each export writes and the text of every refusal are the exporter's own tests; here
// the arguments pick what is exported and a refusal exits 1.
TEST_F(ExportCommand, WritesTheChosenFileOrRefusesAndEscapesABareAmpersandOnlyWhenAsked) {
    ASSERT_EQ(run({"demo"}).exitCode, 0);
    const std::string out = home.path() + "/site-map.html";
    expectSteps({
        {{"export", "Demo", "2cpo", out}, 0, "", std::nullopt},
        {{"export", "Demo", "broken-txt", home.path() + "/b.txt"}, 0, "", std::nullopt},
        {{"export", "Shop", "xml", home.path() + "/n.xml"}, 1, "", std::nullopt},
        {{"export", "Demo", "4c", out}, 2, "", std::nullopt},
    });
    EXPECT_TRUE(
        contains(fileContents(out), "<div class=\"zplPageTitle\"><a href=\"http://127.0.0.1:"));
    EXPECT_TRUE(fileContents(home.path() + "/b.txt").ends_with("/spring-sale.html\n\n"));

    writeFile(site("sitemap.xml"),
              sitemapOf("\n\t<url>\n\t\t<loc>http://h.example/shop/?a&b</loc>\n\t</url>"));
    const std::string xml = home.path() + "/out.xml";
    // The question is the exporter's; the option answers it.
    const auto declined = run({"export", "Shop", "xml", xml});
    EXPECT_EQ(declined.exitCode, 1);
    EXPECT_TRUE(declined.err.ends_with(
        "stays as it is.\nNothing was exported. With --fix-ampersands it is exported with every "
        "bare \"&\" written as \"&amp;\".\n"));
    EXPECT_FALSE(std::filesystem::exists(xml));
    expectSteps({{{"export", "Shop", "xml", xml, "--fix-ampersands"}, 0, "", std::nullopt}});
    EXPECT_TRUE(contains(fileContents(xml), "<loc>http://h.example/shop/?a&amp;b</loc>"));
}

TEST_F(ExportCommand, ValidateNamesEveryFaultAndReadsTheFileNamedASplitOneCompressedToo) {
    writeFile(site("sitemap.xml"), golden("faulty-sitemap.xml"));
    writeFile(home.path() + "/warned.xml",
              sitemapOf(xmlSitemapEntry("http://h.example/shop/", "")));
    expectSteps({
        {{"validate", "Shop"}, 1, golden("faulty-sitemap-problems.txt")},
        // How a problem reads is the check's own test; a warning alone is no failure.
        {{"validate", "Shop", home.path() + "/warned.xml"}, 0, std::nullopt},
        {{"validate", "Shop", home.path() + "/none.xml"},
         1,
         "",
         "The sitemap \"" + home.path() +
             "/none.xml\" could not be read: No such file or directory.\n"},
    });

    std::string entries;
    for (int i = 0; i <= 50000; ++i) {
        entries += xmlSitemapEntry("http://h.example/shop/p" + std::to_string(i) + ".html", "");
    }
    writeFile(site("sitemap.xml"), sitemapOf(entries));
    // What the export writes and says is the exporter's own test; here --gzip reaches it and
    // validate reads a compressed part.
    const std::string pub = home.path() + "/";
    expectSteps({
        {{"export", "Shop", "xml", pub + "sitemap.xml", "--gzip"}, 0, "", std::nullopt},
        {{"validate", "Shop", pub + "sitemap-2.xml.gz"}, 0, "No problems\n"},
    });
}

}  // namespace
}  // namespace loomcrest
