#include "platform/Text.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/HtmlDocument.h"
#include "platform/Regex.h"
#include "platform/Url.h"

namespace loomcrest {
namespace {

// A URL's parts as one line.
std::string described(const UrlParts& parts) {
    return parts.scheme + "|" + parts.host + "|" + parts.path +
           (parts.hasQuery ? "?" + parts.query : "");
}

TEST(Utf8, AcceptsWellFormedAndRejectsMalformedText) {
    // Each range is checked at both of its ends.
    const std::vector<std::pair<std::string, bool>> cases = {
        {"caf\xe9", false},  // Latin-1: a lead byte cut short
        {"\xc2\x80", true},
        {"\xc1\xbf", false},  // two bytes from U+0080
        {"\xe0\xa0\x80", true},
        {"\xe0\x9f\xbf", false},  // three bytes from U+0800
        {"\xf0\x90\x80\x80", true},
        {"\xf0\x8f\xbf\xbf", false},  // four bytes from U+10000
        {"\xed\x9f\xbf", true},
        {"\xed\xa0\x80", false},  // surrogates from U+D800
        {"\xed\xbf\xbf", false},
        {"\xee\x80\x80", true},  // to U+DFFF
        {"\xf4\x8f\xbf\xbf", true},
        {"\xf4\x90\x80\x80", false},      // up to U+10FFFF
        {"\xf8\x88\x80\x80\x80", false},  // five-byte lead
        // Long runs of ASCII are checked eight bytes at a time, up to the byte that is not.
        {std::string(21, 'a') + "\xc3\xa9" + std::string(9, 'b'), true},
        {std::string(16, 'a') + "\xe9" + std::string(9, 'b'), false},
    };
    for (const auto& [text, valid] : cases) {
        EXPECT_EQ(isValidUtf8(text), valid) << testing::PrintToString(text);
    }
}

TEST(ReplaceAllAndSplit, GoLeftToRightWithoutOverlapKeepingEmptyPieces) {
    EXPECT_EQ(replaceAll("http://http://http://x", "http://http://", "http://"), "http://http://x");
    EXPECT_EQ(replaceAll("aaa", "aa", "b"), "ba");
    EXPECT_EQ(replaceAll("unchanged", "", "x"), "unchanged");
    EXPECT_EQ(split("a\nb\n", '\n'), (std::vector<std::string>{"a", "b", ""}));
    EXPECT_EQ(split("", '\n'), std::vector<std::string>{""});
    EXPECT_EQ(split("\n", '\n'), (std::vector<std::string>{"", ""}));
}

TEST(ContainsIgnoringCase, IsAPlainSearch) {
    EXPECT_TRUE(containsIgnoringCase("http://EXAMPLE.com/Index.PHP", ".php"));
    EXPECT_FALSE(containsIgnoringCase("a.b", "a*b")) << "no pattern characters";
    EXPECT_TRUE(containsIgnoringCase("pPpP-Pa", "pa")) << "either case of the first letter";
    EXPECT_TRUE(containsIgnoringCase("xxAB", "ab")) << "at the very end";
    EXPECT_FALSE(containsIgnoringCase("ab", "abc"));
    EXPECT_FALSE(containsIgnoringCase("abc", ""));
}

TEST(LeadingIntegerValue, ReadsTheLeadingNumberLeniently) {
    EXPECT_EQ(leadingIntegerValue("  -7 pages"), -7);
    EXPECT_EQ(leadingIntegerValue("abc"), 0);
    EXPECT_EQ(leadingIntegerValue("99999999999999999999"), 2147483647);
    EXPECT_EQ(leadingIntegerValue("-99999999999999999999"), -2147483648LL);
}

TEST(Regex, MatchesGreedilyStopsOnlyAtALineFeedAndFindsFromAnyStart) {
    EXPECT_FALSE(Regex("<a>(.*)</a>").firstMatch("<a>x\ny</a>").has_value());
    EXPECT_EQ(Regex("<a>(.*)</a>").firstMatch("<a>x\ry</a>")->capture(1), "x\ry");
    EXPECT_EQ(Regex("<b>(.*)</b>").firstMatch("<b>1</b><b>2</b>")->capture(1), "1</b><b>2");
    EXPECT_FALSE(Regex("title").firstMatch("TITLE").has_value());
    EXPECT_TRUE(Regex("title", Regex::Case::Insensitive).firstMatch("TITLE").has_value());
    EXPECT_EQ(Regex("^(.)").firstMatch("\xc3\xa9t\xc3\xa9")->capture(1), "\xc3\xa9");
    EXPECT_EQ(Regex("<t>(.*)</t>").firstMatch("\xff<t>ok</t>")->capture(1), "ok");
    const auto match = Regex("x(y)?(z)").firstMatch("--xz--");
    ASSERT_TRUE(match.has_value());
    EXPECT_EQ(match->whole(), "xz");
    EXPECT_EQ(match->capture(1), std::nullopt);
    EXPECT_EQ(match->capture(9), std::nullopt);
    const Regex broken("(unclosed");
    EXPECT_FALSE(broken.isValid());
    EXPECT_FALSE(broken.firstMatch("(unclosed").has_value());
    const Regex pattern("b+");
    EXPECT_EQ(pattern.find("abba bb")->begin, 1U);
    EXPECT_EQ(pattern.find("abba bb", 3)->begin, 5U);
    EXPECT_FALSE(pattern.find("abba bb", 8).has_value());
}

// Absolute references give their scheme as written, relative ones none, and text that is no
// URI does not parse.
TEST(Urls, SchemesAreReadAsWrittenAndPartsDecoded) {
    const std::vector<std::pair<std::string, std::optional<std::string>>> cases = {
        {"http://example.com/", "http"},
        {"example.com", ""},
        {"http://example.com/a b", std::nullopt},
    };
    for (const auto& [text, scheme] : cases) {
        EXPECT_EQ(urlScheme(text), scheme) << text;
    }

    // Parsing gives the scheme, host, decoded path and query.
    EXPECT_EQ(described(*parseUrl("http://www.host:8080/a%20b/c.html?x=1&y=2")),
              "http|www.host|/a b/c.html?x=1&y=2");
    EXPECT_EQ(described(*parseUrl("http://host")), "http|host|");
    EXPECT_EQ(described(*parseUrl("http://host/p?")), "http|host|/p?");
    EXPECT_FALSE(parseUrl("http://host/a b").has_value());
}

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
    EXPECT_EQ(document->elementsNamed("a").front().attribute("href"), "up");
    EXPECT_EQ(document->elementsNamed("a")[6].attribute("href"), std::nullopt);
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

// The parts a link is judged by, from the resolution, must be those of its printed text
// read again; the shapes here are the ones where the two could part.
TEST(ResolveWithParts, GivesTheTextWithoutFragmentAndThePartsOfThatText) {
    const std::string page = "http://example.com/dir/sub/page.php?x=1";
    struct Case {
        std::string base;
        std::string href;
        std::optional<std::string> text;
        std::string parts;
    };
    const std::vector<Case> cases = {
        {page, "../a.html#top", "http://example.com/dir/a.html", "http|example.com|/dir/a.html"},
        {page, "//example.com", "http://example.com", "http|example.com|"},
        {page, "?#f", "http://example.com/dir/sub/page.php?",
         "http|example.com|/dir/sub/page.php?"},
        {page, "HtTpS://u@WWW.H:/A%2Fb%20c/..//d", "HtTpS://u@WWW.H://d", "HtTpS|WWW.H|//d"},
        {page, "//127.0.0.1:8080/%00x.html?q", "http://127.0.0.1:8080/%00x.html?q",
         "http|127.0.0.1|/?q"},
        {page, "//[::1]/x", "http://[0000:0000:0000:0000:0000:0000:0000:0001]/x",
         "http|0000:0000:0000:0000:0000:0000:0000:0001|/x"},
        {page, "http://[v7.abc]/x", "http://[v7.abc]/x", "http|v7.abc|/x"},
        {page, "http:///x", "http:///x", "http||/x"},
        {page, "mailto:a@b?subject=x#f", "mailto:a@b?subject=x", "mailto||a@b?subject=x"},
        {"http:/a/b", "/.//x", "http://x", "http|x|"},
        {page, "a b", std::nullopt, ""},
        {"relative/base", "x.html", std::nullopt, ""},
    };
    for (const auto& [base, href, text, parts] : cases) {
        const auto resolved = UrlResolver(base).resolveWithParts(href);
        EXPECT_EQ(resolved ? resolved->text + " " + described(resolved->parts) : "none",
                  text ? *text + " " + parts : "none")
            << base << " " << href;
        if (resolved) {
            const auto reread = parseUrl(resolved->text);
            EXPECT_EQ(reread ? described(*reread) : "none", described(resolved->parts));
        }
    }
}

}  // namespace
}  // namespace loomcrest
