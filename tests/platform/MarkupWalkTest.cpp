#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/HtmlDocument.h"

namespace loomcrest {
namespace {

std::vector<std::string> markupOf(const std::vector<MarkupNode>& nodes) {
    std::vector<std::string> texts;
    for (const MarkupNode& node : nodes) {
        texts.push_back(node.markup());
    }
    return texts;
}

// The walk of the tree finds what "//name" selects, in the same order, on markup where the
// parser moves, nests or drops elements.
TEST(MarkupWalk, FindsWhatXPathSelects) {
    const std::string page =
        "<!DOCTYPE html><!-- <a href=c>in a comment</a> --><html><head><TITLE>T &amp; "
        "<b>b</b></TITLE><title>second</title></head><body><A HREF=up>Upper</A>"
        "<a href=x><a href=nested>n</a></a><table><tr><td><a href=t>cell<p>p</a></td></tr>"
        "</table><svg><a href=s>svg</a></svg><div><div><span><a href=deep>d</a></span></div>"
        "</div><a>last</a></body></html><a href=after>after the end</a>";
    const auto document = MarkupDocument::parseHtml(page);
    ASSERT_TRUE(document);
    const std::vector<std::string> anchors = markupOf(document->elementsNamed("a"));
    EXPECT_EQ(anchors, markupOf(document->select("//a")));
    EXPECT_EQ(anchors.size(), 8U);
    EXPECT_EQ(anchors.back(), "<a href=\"after\">after the end</a>");
    EXPECT_EQ(markupOf(document->elementsNamed("a", 2)),
              std::vector<std::string>(anchors.begin(), anchors.begin() + 2));
    EXPECT_EQ(markupOf(document->elementsNamed("title", 1)),
              std::vector<std::string>{"<title>T &amp; <b>b</b>\n</title>\n"});
    EXPECT_TRUE(document->elementsNamed("video").empty());
}

// In an XML document an element in a namespace is not selected by a bare name.
TEST(MarkupWalk, XmlDocumentsKeepXPathRules) {
    const auto document = MarkupDocument::parseXml(
        "<html xmlns=\"http://www.w3.org/1999/xhtml\"><a href=\"x\">x</a></html>");
    ASSERT_TRUE(document);
    EXPECT_TRUE(document->elementsNamed("a").empty());
    const auto plain = MarkupDocument::parseXml("<r><a>1</a><b><a>2</a></b></r>");
    ASSERT_TRUE(plain);
    EXPECT_EQ(markupOf(plain->elementsNamed("a", 1)), std::vector<std::string>{"<a>1</a>"});
}

}  // namespace
}  // namespace loomcrest
