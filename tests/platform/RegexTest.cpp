#include "platform/Regex.h"

#include <gtest/gtest.h>

namespace loomcrest {
namespace {

TEST(Regex, MatchesCharactersGreedilyAndStopsOnlyAtALineFeed) {
    EXPECT_FALSE(Regex("<a>(.*)</a>").firstMatch("<a>x\ny</a>").has_value());
    EXPECT_EQ(Regex("<a>(.*)</a>").firstMatch("<a>x\ry</a>")->capture(1), "x\ry");
    EXPECT_EQ(Regex("<b>(.*)</b>").firstMatch("<b>1</b><b>2</b>")->capture(1), "1</b><b>2");
    EXPECT_EQ(Regex("<b>(.*?)</b>").firstMatch("<b>1</b><b>2</b>")->capture(1), "1");
    EXPECT_FALSE(Regex("title").firstMatch("TITLE").has_value());
    EXPECT_TRUE(Regex("title", Regex::Case::Insensitive).firstMatch("TITLE").has_value());
    EXPECT_EQ(Regex("^(.)").firstMatch("\xc3\xa9t\xc3\xa9")->capture(1), "\xc3\xa9");
    EXPECT_EQ(Regex("<t>(.*)</t>").firstMatch("\xff<t>ok</t>")->capture(1), "ok");
    const auto match = Regex("x(y)?(z)").firstMatch("--xz--");
    ASSERT_TRUE(match.has_value());
    EXPECT_EQ(match->whole(), "xz");
    EXPECT_EQ(match->capture(1), std::nullopt);
    EXPECT_EQ(match->capture(2), "z");
    EXPECT_EQ(match->capture(9), std::nullopt);
    const Regex broken("(unclosed");
    EXPECT_FALSE(broken.isValid());
    EXPECT_FALSE(broken.firstMatch("(unclosed").has_value());
}

TEST(Regex, FindReportsWhereAMatchStandsFromAnyStart) {
    const Regex pattern("b+");
    EXPECT_EQ(pattern.find("abba bb")->begin, 1U);
    EXPECT_EQ(pattern.find("abba bb")->end, 3U);
    EXPECT_EQ(pattern.find("abba bb", 3)->begin, 5U);
    EXPECT_FALSE(pattern.find("abba bb", 8).has_value());
    EXPECT_EQ(Regex::literal("a.b").find("aXb a.b")->begin, 4U);
    EXPECT_EQ(Regex::literal("A.B", Regex::Case::Insensitive).find("aXb a.b")->begin, 4U);
    EXPECT_FALSE(Regex::literal("\xc3\xa9", Regex::Case::Insensitive).find("\xc3\x89").has_value())
        << "only ASCII letters fold";
}

}  // namespace
}  // namespace loomcrest
