#include "platform/Url.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace loomcrest {
namespace {

// Absolute references give their scheme as written, relative ones none, and text that is no
// URI does not parse.
TEST(UrlScheme, IsReadAsWrittenOrNotAtAll) {
    const std::vector<std::pair<std::string, std::optional<std::string>>> cases = {
        {"http://example.com/", "http"},
        {"HTTPS://example.com/", "HTTPS"},
        {"ftp://example.com/", "ftp"},
        {"mailto:me@example.com", "mailto"},
        {"example.com", ""},
        {"/path/page.html", ""},
        {"", ""},
        {"http://example.com/a b", std::nullopt},
        {"http://exa<mple.com/", std::nullopt},
        {"http://[::1/", std::nullopt},
    };
    for (const auto& [text, scheme] : cases) {
        EXPECT_EQ(urlScheme(text), scheme) << text;
    }
}

TEST(ParseUrl, GivesSchemeHostDecodedPathAndQuery) {
    const auto parts = parseUrl("http://www.host:8080/a%20b/c.html?x=1&y=2");
    ASSERT_TRUE(parts.has_value());
    EXPECT_EQ(parts->scheme, "http");
    EXPECT_EQ(parts->host, "www.host");
    EXPECT_EQ(parts->path, "/a b/c.html");
    EXPECT_TRUE(parts->hasQuery);
    EXPECT_EQ(parts->query, "x=1&y=2");
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
