#include <gtest/gtest.h>

#include "editors/LayoutLines.h"
#include "editors/LayoutSearch.h"
#include "sitemap/HtmlSitemapFormat.h"

namespace loomcrest {
namespace {

TEST(LayoutLines, FindsEveryWellFormedLineWhateverItsTitleHolds) {
    const std::string html =
        "<body>" + pageTitleLine("http://h/?a=1&b=2", 0, "Tom & <Jerry>") +
        linkLine("http://h/x", 2, "two\nlines ---\">") +
        "\n\t\t\t<div class=\"zplPageLink\"><a href=\"http://h/y\">no marker</a>"
        "</div>" +
        linkLine("http://h/z", 12, "Z") + "</body>";
    const std::vector<MarkedLine> lines = markedLines(html);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_TRUE(lines[0].isTitle);
    EXPECT_EQ(lines[0].address, "http://h/?a=1&b=2");
    EXPECT_EQ(lines[0].title, "Tom &amp; &lt;Jerry&gt;");
    EXPECT_FALSE(lines[1].isTitle);
    EXPECT_EQ(lines[1].title, "two\nlines ---\"&gt;");
    EXPECT_EQ(lines[2].linkId, "12");
    EXPECT_EQ(markedLines(html, 2).size(), 2U);

    const ClickedLink clicked = clickedLink(lines[0]);
    EXPECT_EQ(clicked.address, "http://h/?a=1&b=2---LINKID:0---");
    EXPECT_EQ(clicked.label, "Tom & <Jerry>");
}

TEST(LayoutSearch, OnlyTheLinesHoldingTheTailAreSearched) {
    const std::string html = "<div a>x</div> tail\n<div b>y</div> tail\n<div c>y</div> tail";
    const Regex pattern("<div .*>y</div> tail");
    const auto found = layoutsearch::firstMatchOnLinesHolding(html, pattern, "tail");
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(html.substr(found->begin, found->end - found->begin), "<div b>y</div> tail");
    EXPECT_FALSE(layoutsearch::firstMatchOnLinesHolding(html, pattern, "none").has_value());

    EXPECT_TRUE(layoutsearch::keepsToOneLine("http://h/a.b?c=d+e*f{2}"));
    for (const char* crossing : {"a\\sb", "a|b", "(?s)", "[^x]", "^a", "a$", "a\nb"}) {
        EXPECT_FALSE(layoutsearch::keepsToOneLine(crossing)) << crossing;
    }
}

TEST(LayoutSearch, ReplacingCountsAndKeepsASingleChangeInPlace) {
    std::string text = "one two one";
    const auto both = layoutsearch::replaceInPlace(text, "one", "1");
    EXPECT_EQ(both.count, 2U);
    EXPECT_EQ(both.first, 0U);
    EXPECT_EQ(both.last, 8U);
    EXPECT_EQ(text, "1 two 1");
    const auto single = layoutsearch::replaceInPlace(text, "two", "zwei");
    EXPECT_EQ(single.count, 1U);
    EXPECT_EQ(single.first, 2U);
    EXPECT_EQ(text, "1 zwei 1");
    EXPECT_EQ(layoutsearch::replaceInPlace(text, "", "3").count, 0U);
    EXPECT_EQ(text, "1 zwei 1");
}

}  // namespace
}  // namespace loomcrest
