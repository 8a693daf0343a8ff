#include "platform/HtmlDocument.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace loomcrest {
namespace {

TEST(HtmlText, ReferencesAreDecodedAsAParserReadsThem) {
    EXPECT_EQ(htmlTextContent("Tom &amp; Jerry &lt;3 &gt; \"x\" &#39;"),
              "Tom & Jerry <3 > \"x\" '");
    EXPECT_EQ(htmlTextContent("caf&eacute; &#233; &#xE9;&nbsp;x"),
              "caf\xC3\xA9 \xC3\xA9 \xC3\xA9\xC2\xA0x");
    EXPECT_EQ(htmlTextContent("<b>bold</b>\n line"), "bold\n line");
    EXPECT_EQ(htmlTextContent("&amp;lt;"), "&lt;");
    EXPECT_EQ(htmlAttributeValue("http://h/?a=1&amp;b=2&c=3"), "http://h/?a=1&b=2&c=3");
    EXPECT_EQ(htmlAttributeValue("http://h/%22x%22&quot;"), "http://h/%22x%22\"");
}

TEST(MarkupDocument, BrokenHtmlStillGivesItsAnchorsInOrder) {
    const auto document =
        MarkupDocument::parseHtml("<p>text <a href=one>1<a href='two'>2</b></div><A HREF=\"3\">");
    ASSERT_TRUE(document.has_value());
    const auto anchors = document->select("//a");
    ASSERT_EQ(anchors.size(), 3U);
    EXPECT_EQ(anchors[0].attribute("href"), "one");
    EXPECT_EQ(anchors[1].attribute("href"), "two");
    EXPECT_EQ(anchors[2].attribute("href"), "3");
    EXPECT_EQ(anchors[2].name(), "a");
}

TEST(MarkupDocument, SourceMarkupKeepsQuotingAndCase) {
    const auto document = MarkupDocument::parseHtml(
        "<html><body><a href=x><IMG SRC=a.png ALT='It''s'></a><a><img alt=\"q>x\"/></a>");
    ASSERT_TRUE(document.has_value());
    const auto anchors = document->select("//a");
    ASSERT_EQ(anchors.size(), 2U);
    EXPECT_EQ(anchors[0].firstChild()->sourceMarkup(), "<IMG SRC=a.png ALT='It''s'>");
    EXPECT_EQ(anchors[1].firstChild()->name(), "img");
}

TEST(MarkupDocument, XmlModeRecoversWhatItCan) {
    EXPECT_TRUE(MarkupDocument::parseXml("<root><a href='1'>x</a></root>").has_value());
    EXPECT_FALSE(MarkupDocument::parseXml("no markup here").has_value());
    EXPECT_FALSE(MarkupDocument::parseHtml("").has_value());
}

TEST(MarkupDocument, StringValueJoinsDescendantText) {
    const auto document = MarkupDocument::parseHtml("<a href=x>A <b>bold</b> move<!-- c --></a>");
    ASSERT_TRUE(document.has_value());
    EXPECT_EQ(document->select("//a").front().stringValue(), "A bold move");
}

TEST(EscapeBareAmpersands, OnlyCompleteReferencesAreKept) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"a&amp;b &lt; &#38; &#x26; &#X26;", "a&amp;b &lt; &#38; &#x26; &#X26;"},
        {"?a=1&b=2", "?a=1&amp;b=2"},
        {"&#; &#x; &; &1x; &amp", "&amp;#; &amp;#x; &amp;; &amp;1x; &amp;amp"},
        {"&#12a; &#xg; &", "&amp;#12a; &amp;#xg; &amp;"},
    };
    for (const auto& [text, escaped] : cases) {
        EXPECT_EQ(escapeBareAmpersands(text), escaped) << text;
    }
}

}  // namespace
}  // namespace loomcrest
