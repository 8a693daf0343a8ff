#include "sitemap/HtmlSitemapFormat.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/Text.h"

namespace loomcrest {
namespace {

TEST(HtmlSitemapHead, HasFortyNineLinesEachEndedByALineFeed) {
    const std::string_view head = htmlSitemapHead();
    EXPECT_EQ(std::count(head.begin(), head.end(), '\n'), 49);
    EXPECT_TRUE(head.ends_with("</head>\n<body>\n"));
    const auto lines = split(head, '\n');
    EXPECT_EQ(lines[0],
              "<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Transitional//EN\" "
              "\"http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd\">");
    EXPECT_EQ(lines[1],
              "<html xmlns=\"http://www.w3.org/1999/xhtml\" xml:lang=\"en\" lang=\"en\">");
    EXPECT_EQ(lines[3],
              "\t<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\"/>");
    EXPECT_EQ(lines[17], "\t.zplPageTitle a {");
    EXPECT_EQ(lines[18], "\t\tfont-family: Times New Roman, Times, serif;");
    EXPECT_EQ(lines[26], "\t\tfont-weight: normal;");
    EXPECT_EQ(lines[30], "\t\tmargin-left: 20px;");
    EXPECT_EQ(lines[31], "\t\tcolor: #0000FF;");
    EXPECT_EQ(lines[34], ".clearer {");
    EXPECT_EQ(lines[35], "\tclear: both;");
    EXPECT_EQ(lines[38], ".zplPageTitleBroken a {");
    EXPECT_EQ(lines[42], "\tcolor: #ff0000;");
    EXPECT_EQ(lines[44], "\t}");
    EXPECT_EQ(lines[45], "-->");
}

TEST(HtmlSitemapHead, WholeStyleBlockIsExact) {
    const std::string_view head = htmlSitemapHead();
    const size_t start = head.find("<head>");
    ASSERT_NE(start, std::string_view::npos);
    EXPECT_EQ(head.substr(start),
              "<head>\n\t<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\"/>\n"
              "\t<title>Sitemap</title>\n<style type=\"text/css\">\n\t<!--\n"
              "\t.zplPageTitle a:active { text-decoration:none }\n"
              "\t.zplPageTitle a:link { text-decoration:none }\n"
              "\t.zplPageTitle a:visited { text-decoration:none }\n"
              "\t.zplPageTitle a:hover { text-decoration:underline }\n\n"
              "\t.zplPageLink a:active { text-decoration:none }\n"
              "\t.zplPageLink a:link { text-decoration:none }\n"
              "\t.zplPageLink a:visited { text-decoration:none }\n"
              "\t.zplPageLink a:hover { text-decoration:underline }\n\n"
              "\t.zplPageTitle a {\n\t\tfont-family: Times New Roman, Times, serif;\n"
              "\t\tfont-weight: bold;\n\t\tfont-style: normal;\n\t\tcolor: #000000;\n"
              "\t\tfont-size: 1.1em;\n\t}\n\n"
              "\t.zplPageLink a {\n\t\tfont-weight: normal;\n\t\tfont-style: normal;\n"
              "\t\tfont-family: Times New Roman, Times, serif;\n\t\tfont-size: 1em;\n"
              "\t\tmargin-left: 20px;\n\t\tcolor: #0000FF;\n\t}\n\n"
              ".clearer {\n\tclear: both;\n}\n\n"
              ".zplPageTitleBroken a {\n\tfont-family: Times New Roman, Times, serif;\n"
              "\tfont-weight: bold;\n\tfont-style: normal;\n\tcolor: #ff0000;\n"
              "\tfont-size: 1.1em;\n\t}\n-->\n</style>\n</head>\n<body>\n");
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
