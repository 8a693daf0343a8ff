#include "sitemap/HtmlSitemapFormat.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "support/Golden.h"

namespace loomcrest {
namespace {

TEST(HtmlSitemapHead, IsTheSharedSampleByteForByte) {
    EXPECT_EQ(htmlSitemapHead(), test::golden("layout-head.html"));
}

TEST(HtmlSitemapLines, CarryTheirMarkersAndNeverCarryMarkup) {
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
}

TEST(HtmlSitemapLayout, OneColumnItemsAreFollowedByAClearer) {
    EXPECT_EQ(oneColumnPiece("ITEM"), "\nITEM\n<div class=\"clearer\">&nbsp;</div>");
}

// Items I1, I2, ... appended to a table of `columns` cells a row.
std::string fill(int columns, int items, int& counter) {
    std::string text;
    for (int i = 1; i <= items; ++i) {
        text += tablePiece("I" + std::to_string(i), columns, counter);
    }
    return text;
}

TEST(HtmlSitemapLayout, TableRowsFillLeftToRightAndCountTheOpenRowsCells) {
    const std::string open = "\n\t<tr valign=\"top\">\n\t\t<td>";
    const std::string next = "\n\t\t</td>\n\t\t<td>";
    const std::string close = "\n\t\t</td>\n\t</tr>";
    const std::vector<std::tuple<int, int, std::string>> cases = {
        {2, 1, open + "I1" + next},
        {2, 2, open + "I1" + next + "I2" + close},
        {2, 3, open + "I1" + next + "I2" + close + open + "I3" + next},
        {3, 2, open + "I1" + next + "I2" + next},
        {3, 3, open + "I1" + next + "I2" + next + "I3" + close},
        {3, 4, open + "I1" + next + "I2" + next + "I3" + close + open + "I4" + next},
        {3, 7,
         open + "I1" + next + "I2" + next + "I3" + close + open + "I4" + next + "I5" + next + "I6" +
             close + open + "I7" + next},
    };
    for (const auto& [columns, items, expected] : cases) {
        int counter = 0;
        EXPECT_EQ(fill(columns, items, counter), expected) << items << " in " << columns;
        EXPECT_EQ(counter, items % columns) << items << " in " << columns;
    }
}

}  // namespace
}  // namespace loomcrest
