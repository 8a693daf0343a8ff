#include "sitemap/PageTitles.h"

#include <gtest/gtest.h>

#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "support/TestServer.h"

namespace loomcrest {
namespace {

using test::TestServer;

constexpr std::chrono::seconds kWait{20};

std::string firstLinkTitle(const std::string& html) {
    const auto document = MarkupDocument::parseHtml(html);
    if (!document) {
        return "<no document>";
    }
    const auto anchors = document->select("//a");
    return anchors.empty() ? "<no anchor>" : findLinkTitle(anchors.front());
}

// Text first (untrimmed), then the name attribute, then the first child's image: its alt in
// double or single quotes (an empty alt never falls back), else its title in double quotes.
TEST(LinkTitles, ComeFromTheFirstSourceThatHasOne) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {R"(<a href="/x">About <b>us</b></a>)", "About us"},
        {"<a href=\"/x\">\n<img src=\"logo.png\" alt=\"Logo\"></a>", "\n"},
        {R"(<a href="/x">Tom &amp; Jerry</a>)", "Tom & Jerry"},
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

TEST(LinkTargets, HrefOrNothing) {
    const auto document = MarkupDocument::parseHtml(
        R"(<p><a HREF="/up.html">1</a><a href="">2</a><a name="n">3</a></p>)");
    ASSERT_TRUE(document.has_value());
    const auto anchors = document->select("//a");
    ASSERT_EQ(anchors.size(), 3U);
    EXPECT_EQ(findHREFInNode(anchors[0]), "/up.html");
    EXPECT_EQ(findHREFInNode(anchors[1]), "");
    EXPECT_EQ(findHREFInNode(anchors[2]), "");
}

class PageTitleFetch : public testing::Test {
protected:
    void SetUp() override {
        server.server().Get(R"(/body/(\d+))",
                            [](const httplib::Request& req, httplib::Response& res) {
                                const size_t body = std::stoul(req.matches[1].str());
                                res.set_content(std::string(kBodies[body].first), "text/html");
                            });
        server.start();
    }

    static constexpr std::array<std::pair<std::string_view, std::string_view>, 9> kBodies = {{
        {"<html><head><title>Tom &amp; Jerry</title></head></html>", "Tom & Jerry"},
        {"<title>A < B</title>", "A < B"},
        {"<title>  spaced  </title>", "  spaced  "},
        {"<html><title></title></html>", "Could not find page title"},
        {"<html><body>no title</body></html>", "Could not find page title"},
        {"", "Could not find page title"},
        // Bodies are UTF-8 unless they declare otherwise.
        {"<title>Caf\xc3\xa9</title>", "Caf\xc3\xa9"},
        {"<meta charset=\"iso-8859-1\"><title>Caf\xe9</title>", "Caf\xc3\xa9"},
        // The XML parse is the second chance.
        {"<?xml version=\"1.0\"?><feed><title>Feed</title></feed>", "Feed"},
    }};

    TestServer server;
};

TEST_F(PageTitleFetch, TitleOrFallback) {
    for (size_t body = 0; body < kBodies.size(); ++body) {
        EXPECT_EQ(lookUpPageTitle(server.url("/body/" + std::to_string(body)), kWait).title,
                  kBodies[body].second)
            << kBodies[body].first;
    }
    for (const std::string& url : {std::string("http://127.0.0.1:1/x.html"), server.url("/none")}) {
        EXPECT_EQ(lookUpPageTitle(url, kWait).title, "Could not find page title") << url;
    }
}

}  // namespace
}  // namespace loomcrest
