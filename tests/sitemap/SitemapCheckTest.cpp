#include "sitemap/SitemapCheck.h"

#include <gtest/gtest.h>

#include "sitemap/SitemapValues.h"

namespace loomcrest {
namespace {

std::vector<std::string> formatted(const std::vector<SitemapProblem>& problems) {
    std::vector<std::string> lines;
    for (const SitemapProblem& problem : problems) {
        lines.push_back(formatProblem(problem));
    }
    return lines;
}

std::string urlset(const std::string& entries) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<urlset xmlns=\"http://www.sitemaps.org/schemas/sitemap/0.9\">\n" +
           entries + "</urlset>";
}

TEST(SitemapValues, DatesPrioritiesChangeFrequenciesFoldersAndSummaries) {
    for (const char* good :
         {"2024", "2024-05", "2024-05-17", "2024-02-29", "2000-02-29", "2024-05-17T09:30Z",
          "2024-05-17T23:59:59+01:00", "2024-05-17T09:30:00.25-05:30"}) {
        EXPECT_EQ(dateProblem(good), std::nullopt) << good;
    }
    for (const char* bad :
         {"2023-02-29", "1900-02-29", "2200-02-29", "2024-04-31", "2024-13-01", "2024-00-10",
          "2024-5-17", "17.05.2024", "2024-05-17T24:00Z", "2024-05-17T09:60Z", "2024-05-17T09:30",
          "2024-05-17 09:30Z", "2024-05-17T09:30+1:00", "2024-05-17T09:30+01:60",
          "2024-05-17T09:30+24:00", "2024-05-17\n", "updated 2024-05-17"}) {
        EXPECT_NE(dateProblem(bad), std::nullopt) << bad;
    }

    for (const char* good : {"0", "0.0", "0.5", "0.55", "1", "1.0", ".3"}) {
        EXPECT_EQ(priorityProblem(good), std::nullopt) << good;
    }
    for (const char* bad : {"", "1.5", "1.01", "-0.1", "high", "0,5", "10"}) {
        EXPECT_NE(priorityProblem(bad), std::nullopt) << bad;
    }
    EXPECT_EQ(changeFrequencyProblem("never"), std::nullopt);
    EXPECT_NE(changeFrequencyProblem("Monthly"), std::nullopt);
    EXPECT_EQ(siteFolderUrl("http://h/shop/index.php?next=/a/b"), "http://h/shop/");
    EXPECT_EQ(siteFolderUrl("http://h"), "http://h/");
    EXPECT_EQ(siteFolderUrl("https://h:8080/"), "https://h:8080/");
    EXPECT_EQ(locationProblem("HTTP://H/shop/a", "http://h/shop/"), std::nullopt);
    EXPECT_EQ(locationProblem("http://h", "http://h/"), std::nullopt);
    EXPECT_EQ(locationProblem(std::string(2047, 'a').replace(0, 9, "http://h/"), "http://h/"),
              std::nullopt);
    EXPECT_EQ(groupedDigits(52428800), "52,428,800");
    EXPECT_EQ(groupedDigits(999), "999");

    const SitemapProblem error{1, SitemapProblem::Severity::Error, "e"};
    const SitemapProblem warning{2, SitemapProblem::Severity::Warning, "w"};
    EXPECT_EQ(problemSummary({}), "No problems");
    EXPECT_EQ(problemSummary({warning, warning}), "No problems, 2 warnings");
    EXPECT_EQ(problemSummary({error}), "1 problem");
    EXPECT_EQ(problemSummary({error, warning, error, error}), "3 problems, 1 warning");
    EXPECT_FALSE(hasErrors({warning}));
    EXPECT_TRUE(hasErrors({warning, error}));
}

TEST(SitemapCheck, CountSizeRootIndexAndBareAmpersands) {
    std::string entries;
    for (int i = 0; i < 3; ++i) {
        entries += "\t<url><loc>http://h/" + std::to_string(i) + "</loc></url>\n";
    }
    const std::string text = urlset(entries);
    EXPECT_TRUE(checkSitemap(text, "http://h/", {3, text.size()}).empty());
    EXPECT_EQ(formatted(checkSitemap(text, "http://h/", {2, text.size() - 1})),
              (std::vector<std::string>{
                  "Line 5: The sitemap holds more than 2 URLs",
                  "Line 6: The sitemap is 211 bytes long; one file may hold at most 210"}));

    EXPECT_EQ(formatted(checkSitemap("<urlset><url/></urlset>", "http://h/")),
              std::vector<std::string>{"Line 1: The root element must be <urlset> or "
                                       "<sitemapindex> in the namespace "
                                       "http://www.sitemaps.org/schemas/sitemap/0.9"});
    EXPECT_EQ(formatted(checkSitemap(urlset("\t<url><loc>http://h/a</loc>\n</urlset>"), "")),
              std::vector<std::string>{"Line 4: The XML is not well formed: Opening and ending "
                                       "tag mismatch: url line 3 and urlset"});

    const std::string index =
        "<sitemapindex xmlns=\"http://www.sitemaps.org/schemas/sitemap/0.9\">\n"
        "<sitemap><loc>http://h/s-1.xml</loc><lastmod>2024-05-17</lastmod></sitemap>\n"
        "<sitemap><loc>http://h/s-2.xml</loc><changefreq>often</changefreq></sitemap>\n"
        "<sitemap><lastmod>2024</lastmod></sitemap>\n</sitemapindex>";
    EXPECT_EQ(formatted(checkSitemap(index, "http://h/index.html")),
              std::vector<std::string>{"Line 4: The <sitemap> entry must hold one <loc>, not 0"});

    // Bare ampersands are counted per line, and the rest is still checked.
    const std::string ampersands = urlset(
        "\t<url><loc>http://h/?a&b&c</loc></url>\n"
        "\t<url><loc>http://h/?a&amp;b&#38;c&lt;</loc><priority>2</priority></url>\n"
        "\t<url><loc>http://h/?x&y</loc><lastmod></lastmod></url>\n");
    EXPECT_EQ(formatted(checkSitemap(ampersands, "http://h/")),
              (std::vector<std::string>{
                  R"(Line 3: A bare "&" must be written "&amp;")",
                  R"(Line 4: The URL "http://h/?a&b&c<" holds characters that must be )"
                  "percent-encoded",
                  R"(Line 4: The priority "2" is not a number from 0.0 to 1.0)",
                  R"(Line 5: A bare "&" must be written "&amp;")",
                  "Line 5: Warning: The last-modified date is empty; the export leaves it out"}));
}

}  // namespace
}  // namespace loomcrest
