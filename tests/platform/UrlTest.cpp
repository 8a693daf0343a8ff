#include "platform/Url.h"

#include <gtest/gtest.h>

namespace loomcrest {
namespace {

TEST(UrlScheme, ReadsTheSchemeOfAbsoluteReferences) {
    EXPECT_EQ(urlScheme("http://example.com/"), "http");
    EXPECT_EQ(urlScheme("HTTPS://example.com/"), "HTTPS");
    EXPECT_EQ(urlScheme("ftp://example.com/"), "ftp");
    EXPECT_EQ(urlScheme("mailto:me@example.com"), "mailto");
}

TEST(UrlScheme, RelativeReferencesHaveNone) {
    EXPECT_EQ(urlScheme("example.com"), "");
    EXPECT_EQ(urlScheme("/path/page.html"), "");
    EXPECT_EQ(urlScheme(""), "");
}

TEST(UrlScheme, TextThatIsNoURIDoesNotParse) {
    EXPECT_EQ(urlScheme("http://example.com/a b"), std::nullopt);
    EXPECT_EQ(urlScheme("http://exa<mple.com/"), std::nullopt);
    EXPECT_EQ(urlScheme("http://[::1/"), std::nullopt);
}

}  // namespace
}  // namespace loomcrest

namespace loomcrest {
namespace {

TEST(ParseUrl, GivesSchemeHostDecodedPathAndQuery) {
    const auto parts = parseUrl("http://www.host:8080/a%20b/c.html?x=1&y=2");
    ASSERT_TRUE(parts.has_value());
    EXPECT_EQ(parts->scheme, "http");
    EXPECT_EQ(parts->host, "www.host");
    EXPECT_EQ(parts->path, "/a b/c.html");
    EXPECT_TRUE(parts->hasQuery);
    EXPECT_EQ(parts->query, "x=1&y=2");
}

TEST(ParseUrl, PathsOfHostsAndFolders) {
    EXPECT_EQ(parseUrl("http://host")->path, "");
    EXPECT_EQ(parseUrl("http://host/")->path, "/");
    EXPECT_EQ(parseUrl("http://host/dir/")->path, "/dir/");
    EXPECT_TRUE(parseUrl("http://host/p?")->hasQuery);
    EXPECT_FALSE(parseUrl("http://host/p")->hasQuery);
    EXPECT_FALSE(parseUrl("http://host/a b").has_value());
}

TEST(ResolveUrl, FollowsTheStandardResolution) {
    const std::string base = "http://host/a/b/page.html";
    EXPECT_EQ(resolveUrl(base, "x.html"), "http://host/a/b/x.html");
    EXPECT_EQ(resolveUrl(base, "../x.html"), "http://host/a/x.html");
    EXPECT_EQ(resolveUrl(base, "../../../../x.html"), "http://host/x.html");
    EXPECT_EQ(resolveUrl(base, "/x.html"), "http://host/x.html");
    EXPECT_EQ(resolveUrl(base, "#top"), "http://host/a/b/page.html#top");
    EXPECT_EQ(resolveUrl(base, "?q=1"), "http://host/a/b/page.html?q=1");
    EXPECT_EQ(resolveUrl(base, "//other/x"), "http://other/x");
    EXPECT_EQ(resolveUrl(base, "mailto:me@host"), "mailto:me@host");
    EXPECT_EQ(resolveUrl(base, "a b.html"), std::nullopt);
    EXPECT_EQ(resolveUrl("not a base", "x.html"), std::nullopt);
}

}  // namespace
}  // namespace loomcrest
