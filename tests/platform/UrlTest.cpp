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
