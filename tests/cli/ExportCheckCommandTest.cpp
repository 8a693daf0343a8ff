#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "sitemap/SitemapFiles.h"
#include "sitemap/XmlSitemapFormat.h"
#include "support/Golden.h"
#include "support/RunCommand.h"
#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

using namespace test;

class ExportChecks : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(runLoomcrest(home, {"add", "Shop", "http://h.example/shop/index.html"}).exitCode,
                  0);
    }
    std::string site(const std::string& file) const { return home.dataRoot() + "/Shop/" + file; }

    TemporaryHome home;
};

TEST_F(ExportChecks, ValidateNamesEveryFaultWithItsLine) {
    writeFile(site("sitemap.xml"), test::golden("faulty-sitemap.xml"));
    const auto result = runLoomcrest(home, {"validate", "Shop"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, test::golden("faulty-sitemap-problems.txt"));
}

TEST_F(ExportChecks, ValidateCountsWarningsAloneAndReadsTheFileNamed) {
    writeFile(home.path() + "/warned.xml", std::string(xmlSitemapHeader()) +
                                               xmlSitemapEntry("http://h.example/shop/", "") +
                                               "\n</urlset>");
    const auto warned = runLoomcrest(home, {"validate", "Shop", home.path() + "/warned.xml"});
    EXPECT_EQ(warned.exitCode, 0);
    EXPECT_EQ(warned.out,
              "Line 10: Warning: The last-modified date is empty; the export leaves it out\n"
              "No problems, 1 warning\n");

    writeFile(home.path() + "/broken.xml", "<urlset>\n<url></urlset>");
    const auto broken = runLoomcrest(home, {"validate", "Shop", home.path() + "/broken.xml"});
    EXPECT_EQ(broken.exitCode, 1);
    EXPECT_EQ(broken.out,
              "Line 2: The XML is not well formed: Opening and ending tag mismatch: url line 2 "
              "and urlset\n1 problem\n");

    const auto missing = runLoomcrest(home, {"validate", "Shop", home.path() + "/none.xml"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_EQ(missing.err, "The sitemap \"" + home.path() +
                               "/none.xml\" could not be read: No such file or directory.\n");
}

TEST_F(ExportChecks, ABareAmpersandIsExportedEscapedOnlyWhenAsked) {
    const std::string sitemap = std::string(xmlSitemapHeader()) +
                                "\n\t<url>\n\t\t<loc>http://h.example/shop/?a&b</loc>" +
                                "\n\t\t<lastmod>2024-05-17</lastmod>\n\t</url>\n</urlset>";
    writeFile(site("sitemap.xml"), sitemap);
    const std::string out = home.path() + "/out.xml";
    const auto refused = runLoomcrest(home, {"export", "Shop", "xml", out});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.err,
              "The XML sitemap is not well formed: line 9 holds a bare \"&\".\n"
              "Export it with every bare \"&\" written as \"&amp;\"? The site's own sitemap.xml "
              "stays as it is.\n"
              "Nothing was exported. With --fix-ampersands it is exported with every bare \"&\" "
              "written as \"&amp;\".\n");
    EXPECT_FALSE(std::filesystem::exists(out));

    const auto fixed = runLoomcrest(home, {"export", "Shop", "xml", out, "--fix-ampersands"});
    EXPECT_EQ(fixed.exitCode, 0);
    EXPECT_EQ(fileContents(out), std::string(xmlSitemapHeader()) +
                                     "\n\t<url>\n\t\t<loc>http://h.example/shop/?a&amp;b</loc>"
                                     "\n\t\t<lastmod>2024-05-17</lastmod>\n\t</url>\n</urlset>");
    EXPECT_EQ(fileContents(site("sitemap.xml")), sitemap);
}

TEST_F(ExportChecks, ASplitAndCompressedSitemapValidates) {
    std::string sitemap(xmlSitemapHeader());
    for (int i = 0; i <= 120000; ++i) {
        sitemap += xmlSitemapEntry("http://h.example/shop/p" + std::to_string(i) + ".html",
                                   i % 2 == 0 ? "" : "2024-05-17");
    }
    writeFile(site("sitemap.xml"), sitemap + "\n</urlset>");
    const std::string index = home.path() + "/pub/sitemap.xml";
    std::filesystem::create_directories(home.path() + "/pub");
    const auto exported = runLoomcrest(home, {"export", "Shop", "xml", index, "--gzip"});
    EXPECT_EQ(exported.exitCode, 0);
    EXPECT_EQ(exported.err,
              "The XML sitemap was exported.\n"
              "\"sitemap.xml\" is a sitemap index of 3 parts beside it, \"sitemap-1.xml.gz\" to "
              "\"sitemap-3.xml.gz\": one file may hold at most 50,000 URLs and 50 MB.\n"
              "60,001 empty last-modified dates were left out: search engines take an empty date "
              "as an invalid one.\n");
    EXPECT_NE(fileContents(index).find("<loc>http://h.example/shop/sitemap-3.xml.gz</loc>"),
              std::string::npos);
    for (const std::string& file :
         {index, home.path() + "/pub/sitemap-1.xml.gz", home.path() + "/pub/sitemap-2.xml.gz",
          home.path() + "/pub/sitemap-3.xml.gz"}) {
        const auto validated = runLoomcrest(home, {"validate", "Shop", file});
        EXPECT_EQ(validated.exitCode, 0) << file;
        EXPECT_EQ(validated.out, "No problems\n") << file;
    }
    EXPECT_FALSE(std::filesystem::exists(home.path() + "/pub/sitemap-4.xml.gz"));
}

TEST_F(ExportChecks, AnExportThatCannotBeWrittenSaysWhyAndExitsOne) {
    writeFile(site("sitemap3c.html"), "<html>");
    writeFile(site("sitemap.xml"), std::string(xmlSitemapHeader()) + "\n</urlset>");
    writeFile(site("badLinks.txt"), "http://h.example/shop/gone.html\n");
    // The superuser writes into read-only folders, but not into /sys.
    std::string readOnly = "/sys/loomcrest-export.txt";
    if (::geteuid() != 0) {
        std::filesystem::create_directories(home.path() + "/locked");
        ::chmod((home.path() + "/locked").c_str(), 0555);
        readOnly = home.path() + "/locked/export.txt";
    }
    const std::vector<std::tuple<std::string, std::string, std::string>> cases = {
        {"3c", home.path() + "/missing/sitemap.html", "No such file or directory."},
        {"xml", home.path(), "Is a directory."},
        {"broken-html", readOnly, "Permission denied."},
    };
    for (const auto& [layout, file, reason] : cases) {
        const auto result = runLoomcrest(home, {"export", "Shop", layout, file});
        EXPECT_EQ(result.exitCode, 1) << layout;
        EXPECT_EQ(result.err,
                  "The export could not be written to \"" + file + "\".\n" + reason + "\n");
    }
    const auto empty = runLoomcrest(home, {"export", "Shop", "broken-txt", ""});
    EXPECT_EQ(empty.exitCode, 1);
    EXPECT_EQ(empty.err, "The export could not be written.\nNo file name was given.\n");
    EXPECT_FALSE(std::filesystem::exists(home.path() + "/missing"));
}

}  // namespace
}  // namespace loomcrest
