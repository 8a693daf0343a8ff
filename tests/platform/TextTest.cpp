#include "platform/Text.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace loomcrest {
namespace {

TEST(Utf8, AcceptsWellFormedAndRejectsMalformedText) {
    // Each range is checked at both of its ends.
    const std::vector<std::pair<std::string, bool>> cases = {
        {"", true},
        {"plain", true},
        {"caf\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80", true},
        {"caf\xe9", false},  // Latin-1
        {"\xc3", false},     // cut short
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
