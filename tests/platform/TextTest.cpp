#include "platform/Text.h"

#include <gtest/gtest.h>

namespace loomcrest {
namespace {

TEST(Utf8, AcceptsWellFormedAndRejectsMalformedText) {
    EXPECT_TRUE(isValidUtf8(""));
    EXPECT_TRUE(isValidUtf8("plain"));
    EXPECT_TRUE(isValidUtf8("caf\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80"));
    EXPECT_FALSE(isValidUtf8("caf\xe9"));           // Latin-1
    EXPECT_FALSE(isValidUtf8("\xc3"));              // cut short
    EXPECT_FALSE(isValidUtf8("\xc0\xaf"));          // overlong "/"
    EXPECT_FALSE(isValidUtf8("\xed\xa0\x80"));      // surrogate
    EXPECT_FALSE(isValidUtf8("\xf4\x90\x80\x80"));  // beyond U+10FFFF
    // Long runs of ASCII are checked eight bytes at a time, up to the byte that is not.
    EXPECT_TRUE(isValidUtf8(std::string(21, 'a') + "\xc3\xa9" + std::string(9, 'b')));
    EXPECT_FALSE(isValidUtf8(std::string(16, 'a') + "\xe9" + std::string(9, 'b')));
}

TEST(ReplaceAll, ReplacesLeftToRightWithoutOverlap) {
    EXPECT_EQ(replaceAll("a b  c", " ", "%20"), "a%20b%20%20c");
    EXPECT_EQ(replaceAll("http://http://http://x", "http://http://", "http://"), "http://http://x");
    EXPECT_EQ(replaceAll("aaa", "aa", "b"), "ba");
    EXPECT_EQ(replaceAll("unchanged", "", "x"), "unchanged");
}

TEST(ContainsIgnoringCase, IsAPlainSearch) {
    EXPECT_TRUE(containsIgnoringCase("http://EXAMPLE.com/Index.PHP", ".php"));
    EXPECT_TRUE(containsIgnoringCase("<PagesFound>", "<pagesfound>"));
    EXPECT_FALSE(containsIgnoringCase("indexphp", ".php"));
    EXPECT_FALSE(containsIgnoringCase("a.b", "a*b")) << "no pattern characters";
    EXPECT_TRUE(containsIgnoringCase("pPpP-Pa", "pa")) << "either case of the first letter";
    EXPECT_TRUE(containsIgnoringCase("xxAB", "ab")) << "at the very end";
    EXPECT_FALSE(containsIgnoringCase("ab", "abc"));
    EXPECT_FALSE(containsIgnoringCase("abc", ""));
}

TEST(Split, KeepsEmptyPieces) {
    EXPECT_EQ(split("a\nb\n", '\n'), (std::vector<std::string>{"a", "b", ""}));
    EXPECT_EQ(split("", '\n'), std::vector<std::string>{""});
    EXPECT_EQ(split("\n", '\n'), (std::vector<std::string>{"", ""}));
}

TEST(LeadingIntegerValue, ReadsTheLeadingNumberLeniently) {
    EXPECT_EQ(leadingIntegerValue("42"), 42);
    EXPECT_EQ(leadingIntegerValue("  -7 pages"), -7);
    EXPECT_EQ(leadingIntegerValue("+3"), 3);
    EXPECT_EQ(leadingIntegerValue("12abc"), 12);
    EXPECT_EQ(leadingIntegerValue("abc"), 0);
    EXPECT_EQ(leadingIntegerValue(""), 0);
    EXPECT_EQ(leadingIntegerValue("99999999999999999999"), 2147483647);
    EXPECT_EQ(leadingIntegerValue("-99999999999999999999"), -2147483648LL);
}

}  // namespace
}  // namespace loomcrest
