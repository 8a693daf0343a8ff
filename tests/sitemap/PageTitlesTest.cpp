#include "sitemap/PageTitles.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "support/TestServer.h"

namespace loomcrest {
namespace {

constexpr std::chrono::seconds kWait{20};

std::string firstLinkTitle(const std::string& html) {
    return findLinkTitle(readHtmlOutline(html).value().anchors.at(0));
}

// A page is read from the parser's events, without its tree; that it reads what the tree
// holds is compared by the titles fuzz target, on seeds of markup the parser reorders, closes
// early, prefixes or stops reading. Here, what it reads of them.
TEST(PageOutline, ReadsTitlesAnchorsAndLinkTitlesAsTheTreeHoldsThem) {
    // An anchor's target is its href, or nothing.
    const auto outline = readHtmlOutline(
        R"(<p><a HREF="/up.html">1</a><a href="">2</a><a name="n">3</a><a href>4</a></p>)");
    ASSERT_TRUE(outline.has_value());
    std::vector<std::string> hrefs;
    for (const AnchorOutline& anchor : outline->anchors) {
        hrefs.push_back(anchor.href);
    }
    EXPECT_EQ(hrefs, (std::vector<std::string>{"/up.html", "", "", ""}));
    // An anchor inside html, body and `divs` div elements.
    const auto nestedIn = [](int divs) {
        std::string page = "<html><body>";
        for (int i = 0; i < divs; ++i) {
            page += "<div>";
        }
        return readHtmlOutline(page + "<a href=deep>d</a>");
    };
    // With 257 elements open the parse stops, and the anchor is never read.
    ASSERT_TRUE(nestedIn(255).has_value());
    EXPECT_TRUE(nestedIn(255)->anchors.empty());
    EXPECT_EQ(nestedIn(254)->anchors.size(), 1U);
    // A prefixed element counts under its local name.
    const auto prefixed = readHtmlOutline(
        "<svg:a xlink:href=q href=r>svg</svg:a><x:title>T</x:title><a:b:c>z"
        "</a:b:c><a><x:img alt=p></a><a><img alt=w></a>");
    ASSERT_TRUE(prefixed.has_value());
    EXPECT_EQ(prefixed->title, "T");
    ASSERT_EQ(prefixed->anchors.size(), 3U);
    EXPECT_EQ(prefixed->anchors[0].href, "r");
    EXPECT_EQ(prefixed->anchors[1].firstChildImage, "<img alt=\"p\">");
    EXPECT_EQ(prefixed->anchors[2].firstChildImage, "<img alt=w>");
    // Script text is part of a title; a comment or instruction is an anchor's first child.
    const auto mixed = readHtmlOutline(
        "<title>a<script>s</script><!--c-->b</title><a href=x><!--c--><img "
        "alt=q></a><a href=y><?pi x?><img alt=r></a>");
    ASSERT_TRUE(mixed.has_value());
    EXPECT_EQ(mixed->title, "asb");
    EXPECT_FALSE(mixed->anchors.at(0).firstChildImage.has_value());
    EXPECT_FALSE(mixed->anchors.at(1).firstChildImage.has_value());
    EXPECT_FALSE(readHtmlOutline("<!-- only a comment -->").has_value());
    // The tree builder stops at a run of text over 10 MB; the reading goes on past it.
    const auto longText =
        readHtmlOutline("<p>" + std::string(10'500'000, 'x') + "</p><a href=a>After</a>");
    ASSERT_TRUE(longText.has_value());
    ASSERT_EQ(longText->anchors.size(), 1U);
    EXPECT_EQ(longText->anchors[0].text, "After");
}

// Text first (untrimmed), then the name attribute, then the first child's image: its alt in
// double or single quotes (an empty alt never falls back), else its title in double quotes.
TEST(LinkTitle, IsTheTextTheNameOrTheFirstChildImage) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {R"(<a href="/x">About <b>us</b></a>)", "About us"},
        {"<a href=\"/x\">\n<img src=\"logo.png\" alt=\"Logo\"></a>", "\n"},
        {R"(<a name="top" href="#"></a>)", "top"},
        {R"(<a href="/"><img src="l.png" alt="Logo"></a>)", "Logo"},
        {R"(<a href="/"><img src='l.png' alt='Logo'></a>)", "Logo"},
        {R"(<a href="/"><img src=l.png alt=Logo></a>)", "Image Link With No Alt Tag"},
        {R"(<a href="/"><IMG SRC="l.png" ALT="Logo"></a>)", "Image Link With No Alt Tag"},
        {R"(<a href="/"><img alt="" title="Home"></a>)", "Image Link With No Alt Tag"},
        {R"(<a href="/"><img src="h.png" title="Home"></a>)", "Home"},
        {R"(<a href="/"><img src="h.png" title=Home></a>)", "Image Link With No Title or Alt Tags"},
        {R"(<a href="/"><img src="h.png"></a>)", "Could not find link title"},
        {R"(<a href="/"><span></span><img alt="Logo"></a>)", "No Link Name Found"},
        {R"(<a href="/"></a>)", "No Link Name Found"},
    };
    for (const auto& [html, title] : cases) {
        EXPECT_EQ(firstLinkTitle(html), title) << html;
    }
}

TEST(PageTitleFetch, TitleOrFallback) {
    const std::vector<std::pair<std::string, std::string>> bodies = {
        {"<html><head><title>Tom &amp; Jerry</title></head></html>", "Tom & Jerry"},
        {"<title>  spaced  </title>", "  spaced  "},
        {"<html><title></title></html>", "Could not find page title"},
        {"", "Could not find page title"},
        // Bodies are UTF-8 unless they declare otherwise.
        {"<title>Caf\xc3\xa9</title>", "Caf\xc3\xa9"},
        {"<meta charset=\"iso-8859-1\"><title>Caf\xe9</title>", "Caf\xc3\xa9"},
        // The XML parse is the second chance.
        {"<?xml version=\"1.0\"?><feed><title>Feed</title></feed>", "Feed"},
    };
    test::TestServer server;
    server.server().Get(R"(/body/(\d+))", [&](const httplib::Request& req, httplib::Response& res) {
        res.set_content(bodies.at(std::stoul(req.matches[1].str())).first, "text/html");
    });
    server.start();
    for (size_t body = 0; body < bodies.size(); ++body) {
        EXPECT_EQ(lookUpPageTitle(server.url("/body/" + std::to_string(body)), kWait).title,
                  bodies[body].second)
            << bodies[body].first;
    }
    for (const std::string& url : {std::string("http://127.0.0.1:1/x.html"), server.url("/none")}) {
        EXPECT_EQ(lookUpPageTitle(url, kWait).title, "Could not find page title") << url;
    }
}

}  // namespace
}  // namespace loomcrest
