#include "sitemap/HtmlSitemapFormat.h"
#include "support/LayoutPieces.h"

#include <gtest/gtest.h>

#include <ctime>
#include <tuple>
#include <vector>

#include "sitemap/LastModified.h"
#include "sitemap/SitemapFiles.h"
#include "sitemap/XmlSitemapFormat.h"
#include "support/Golden.h"

namespace loomcrest {
namespace {

TEST(HtmlSitemapLines, FollowTheSharedHeadCarryTheirMarkersAndNeverCarryMarkup) {
    EXPECT_EQ(linkLine("http://host/about.html", 7, "About us"),
              "\n\t\t\t<div class=\"zplPageLink\"><a href=\"http://host/about.html---LINKID:7---\">"
              "About us<!-- LINKID: 7 --></a></div>");
    // Text and addresses as crawled: a title that was "&lt;b&gt;" in the page's source reads
    // "<b>" and is shown so, never run.
    EXPECT_EQ(
        pageTitleLine("http://host/?a=1&b=\"2\"", 0,
                      "Tom & Jerry <3 \"x\" <b onmouseover=\"x()\"> &lt;"),
        "\n\t\t\t<div class=\"zplPageTitle\"><a href=\"http://host/?a=1&b=%222%22---LINKID:0---\">"
        "Tom &amp; Jerry &lt;3 \"x\" &lt;b onmouseover=\"x()\"&gt; &amp;lt;<!-- LINKID: 0 -->"
        "</a></div>");

    EXPECT_EQ(htmlSitemapHead(), test::golden("layout-head.html"));
}

TEST(HtmlSitemapLayout, TableRowsFillLeftToRightAndCountTheOpenRowsCells) {
    const std::string open = "\n\t<tr valign=\"top\">\n\t\t<td>";
    const std::string next = "\n\t\t</td>\n\t\t<td>";
    const std::string close = "\n\t\t</td>\n\t</tr>";
    const std::vector<std::tuple<int, int, std::string>> cases = {
        {2, 3, open + "I1" + next + "I2" + close + open + "I3" + next},
        {3, 4, open + "I1" + next + "I2" + next + "I3" + close + open + "I4" + next},
    };
    for (const auto& [columns, items, expected] : cases) {
        int counter = 0;
        std::string table;  // items I1, I2, ... appended
        for (int i = 1; i <= items; ++i) {
            table += test::tablePiece("I" + std::to_string(i), columns, counter);
        }
        EXPECT_EQ(table, expected) << items << " in " << columns;
        EXPECT_EQ(counter, items % columns) << items << " in " << columns;
    }
}

TEST(XmlSitemap, MakesTheSharedSampleAndEscapesInOrderAndEscapesEscapesAgain) {
    EXPECT_EQ(std::string(xmlSitemapHeader()) +
                  xmlSitemapEntry("http://host/a.html", "2024-05-17") +
                  xmlSitemapEntry("Not Found", "") + "\n</urlset>",
              test::golden("sitemap.xml"));

    EXPECT_EQ(escapeLocation("http://h/?a=1&b='2'&c=\"<3>\""),
              "http://h/?a=1&amp;b=&apos;2&apos;&amp;c=&quot;&lt;3&gt;&quot;");
    EXPECT_EQ(escapeLocation("http://h/?a&amp;b"), "http://h/?a&amp;amp;b");
}

// Noon on the local clock, which shows the same date in every time zone.
std::string weekYearOn(int year, int month, int day) {
    std::tm date{};
    date.tm_year = year - 1900;
    date.tm_mon = month - 1;
    date.tm_mday = day;
    date.tm_hour = 12;
    date.tm_isdst = -1;
    return weekYearDate(std::chrono::system_clock::from_time_t(std::mktime(&date)));
}

TEST(WeekYear, TheWeekHoldingNewYearsDayBelongsToTheNewYear) {
    EXPECT_EQ(weekYearOn(2023, 12, 31), "2024-12-31");  // Sunday: its week holds 1 January 2024
    EXPECT_EQ(weekYearOn(2022, 12, 31), "2022-12-31");  // Saturday; 1 January 2023 is a Sunday
    EXPECT_EQ(weekYearOn(2024, 5, 31), "2024-05-31");   // Friday: only December's weeks move on
}

}  // namespace
}  // namespace loomcrest
