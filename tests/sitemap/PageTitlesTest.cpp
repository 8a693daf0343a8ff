#include "sitemap/PageTitles.h"

#include <gtest/gtest.h>

#include <mutex>

#include "support/TestServer.h"

namespace loomcrest {
namespace {

using test::TestServer;

// The title of the first anchor of `html`.
std::string firstLinkTitle(const std::string& html) {
    const auto document = MarkupDocument::parseHtml(html);
    if (!document) {
        return "<no document>";
    }
    const auto anchors = document->select("//a");
    return anchors.empty() ? "<no anchor>" : findLinkTitle(anchors.front());
}

TEST(LinkTitles, TextComesFirstUntrimmed) {
    EXPECT_EQ(firstLinkTitle(R"(<a href="/x">About <b>us</b></a>)"), "About us");
    EXPECT_EQ(firstLinkTitle("<a href=\"/x\">\n<img src=\"logo.png\" alt=\"Logo\"></a>"), "\n");
    EXPECT_EQ(firstLinkTitle(R"(<a href="/x">Tom &amp; Jerry</a>)"), "Tom & Jerry");
}

TEST(LinkTitles, NameAttributeComesNext) {
    EXPECT_EQ(firstLinkTitle(R"(<a name="top" href="#"></a>)"), "top");
}

TEST(LinkTitles, ImageAltInThreeQuotings) {
    EXPECT_EQ(firstLinkTitle(R"(<a href="/"><img src="l.png" alt="Logo"></a>)"), "Logo");
    EXPECT_EQ(firstLinkTitle(R"(<a href="/"><img src='l.png' alt='Logo'></a>)"), "Logo");
    EXPECT_EQ(firstLinkTitle(R"(<a href="/"><img src=l.png alt=Logo></a>)"),
              "Image Link With No Alt Tag");
}

TEST(LinkTitles, AltInCapitalsPassesTheTestButMatchesNoPattern) {
    EXPECT_EQ(firstLinkTitle(R"(<a href="/"><IMG SRC="l.png" ALT="Logo"></a>)"),
              "Image Link With No Alt Tag");
}

TEST(LinkTitles, EmptyAltNeverFallsBackToTitle) {
    EXPECT_EQ(firstLinkTitle(R"(<a href="/"><img alt="" title="Home"></a>)"),
              "Image Link With No Alt Tag");
}

TEST(LinkTitles, ImageTitleWhenThereIsNoAlt) {
    EXPECT_EQ(firstLinkTitle(R"(<a href="/"><img src="h.png" title="Home"></a>)"), "Home");
    EXPECT_EQ(firstLinkTitle(R"(<a href="/"><img src="h.png" title=Home></a>)"),
              "Image Link With No Title or Alt Tags");
    EXPECT_EQ(firstLinkTitle(R"(<a href="/"><img src="h.png"></a>)"), "Could not find link title");
}

TEST(LinkTitles, OnlyTheFirstChildIsExamined) {
    EXPECT_EQ(firstLinkTitle(R"(<a href="/"><span></span><img alt="Logo"></a>)"),
              "No Link Name Found");
    EXPECT_EQ(firstLinkTitle(R"(<a href="/"></a>)"), "No Link Name Found");
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

TEST(PageTitleFromBody, TitleOrFallback) {
    EXPECT_EQ(pageTitleFromBody("<html><head><title>Tom &amp; Jerry</title></head></html>"),
              "Tom & Jerry");
    EXPECT_EQ(pageTitleFromBody("<title>A < B</title>"), "A < B");
    EXPECT_EQ(pageTitleFromBody("<title>  spaced  </title>"), "  spaced  ");
    EXPECT_EQ(pageTitleFromBody("<html><title></title></html>"), "Could not find page title");
    EXPECT_EQ(pageTitleFromBody("<html><body>no title</body></html>"), "Could not find page title");
    EXPECT_EQ(pageTitleFromBody(""), "Could not find page title");
    EXPECT_EQ(pageTitleFromBody("\x01\x02\xff"), "Could not find page title");
}

TEST(PageTitleFromBody, BodiesAreUtf8UnlessTheyDeclareOtherwise) {
    EXPECT_EQ(pageTitleFromBody("<title>Caf\xc3\xa9</title>"), "Caf\xc3\xa9");
    EXPECT_EQ(pageTitleFromBody("<meta charset=\"iso-8859-1\"><title>Caf\xe9</title>"),
              "Caf\xc3\xa9");
}

TEST(PageTitleFromBody, TheXmlParseIsTheSecondChance) {
    EXPECT_EQ(pageTitleFromBody("<?xml version=\"1.0\"?><feed><title>Feed</title></feed>"), "Feed");
}

class PageTitleFetch : public testing::Test {
protected:
    void SetUp() override {
        server.server().Get(
            "/titled.html", [this](const httplib::Request&, httplib::Response& res) {
                const std::lock_guard lock(mutex);
                ++requests;
                res.set_content("<html><head><title>Index of /images</title></head></html>",
                                "text/html");
            });
        server.start();
    }

    TestServer server;
    std::mutex mutex;
    int requests = 0;
};

TEST_F(PageTitleFetch, AsksTwiceAndReadsTheTitle) {
    EXPECT_EQ(findPageHTMLTitleElement(server.url("/titled.html")), "Index of /images");
    const std::lock_guard lock(mutex);
    EXPECT_EQ(requests, 2);
}

TEST_F(PageTitleFetch, UnreachablePagesFallBack) {
    EXPECT_EQ(findPageHTMLTitleElement("http://127.0.0.1:1/x.html"), "Could not find page title");
    EXPECT_EQ(findPageHTMLTitleElement(server.url("/missing.html")), "Could not find page title");
}

}  // namespace
}  // namespace loomcrest
