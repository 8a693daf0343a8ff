#include "sitemap/HtmlSitemapFormat.h"

#include <gtest/gtest.h>

#include <algorithm>

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

std::string fill(int columns, int items, int& counter) {
    std::string text;
    for (int i = 1; i <= items; ++i) {
        text += tablePiece("I" + std::to_string(i), columns, counter);
    }
    return text;
}

TEST(HtmlSitemapLayout, TwoColumnRowsFillLeftToRight) {
    const std::string open = "\n\t<tr valign=\"top\">\n\t\t<td>";
    const std::string next = "\n\t\t</td>\n\t\t<td>";
    const std::string close = "\n\t\t</td>\n\t</tr>";
    const std::string expected[] = {
        open + "I1" + next,
        open + "I1" + next + "I2" + close,
        open + "I1" + next + "I2" + close + open + "I3" + next,
    };
    for (int items = 1; items <= 3; ++items) {
        int counter = 0;
        EXPECT_EQ(fill(2, items, counter), expected[items - 1]) << items << " items";
        EXPECT_EQ(counter, items % 2);
    }
}

TEST(HtmlSitemapLayout, ThreeColumnCountersOverOneToSevenItems) {
    const std::string open = "\n\t<tr valign=\"top\">\n\t\t<td>";
    const std::string next = "\n\t\t</td>\n\t\t<td>";
    const std::string close = "\n\t\t</td>\n\t</tr>";
    for (int items = 1; items <= 7; ++items) {
        int three = 0;
        int two = 0;
        const std::string text = fill(3, items, three);
        fill(2, items, two);
        EXPECT_EQ(three, items % 3) << items << " items";
        EXPECT_EQ(two, items % 2) << items << " items";
        const auto count = [&](const std::string& piece) {
            size_t found = 0;
            for (size_t at = text.find(piece); at != std::string::npos;
                 at = text.find(piece, at + 1)) {
                ++found;
            }
            return static_cast<int>(found);
        };
        EXPECT_EQ(count(open), (items + 2) / 3);
        EXPECT_EQ(count(close), items / 3);
    }
    int counter = 0;
    EXPECT_EQ(fill(3, 4, counter),
              open + "I1" + next + "I2" + next + "I3" + close + open + "I4" + next);
}

}  // namespace
}  // namespace loomcrest
