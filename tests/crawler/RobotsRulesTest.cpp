#include "crawler/RobotsRules.h"

#include <gtest/gtest.h>

#include "crawler/PageList.h"

namespace loomcrest {
namespace {

TEST(RobotsRules, EveryDisallowLineCountsWhateverItsGroup) {
    const auto rules = parseRobotsText(
        "User-agent: somebot\nDisallow: /private\n# Disallow: /comment\nAllow: /open\n"
        "User-agent: *\nDisallow: /tmp/\ndisallow: /lower\nDisallow:/tight\nDisallow: \n");
    EXPECT_EQ(rules, (std::vector<std::string>{"/private", "/tmp/", ""}));
}

TEST(RobotsRules, CarriageReturnsStayAndMatchNothing) {
    const auto rules = parseRobotsText("User-agent: *\r\nDisallow: /private\r\n");
    ASSERT_EQ(rules, std::vector<std::string>{"/private\r"});
    EXPECT_FALSE(anyEntryOccursIn("http://host/private/x.html", rules));
}

TEST(RobotsRules, MatchingIsASubstringTestIgnoringCase) {
    const std::vector<std::string> rules = {"/a", ""};
    EXPECT_TRUE(anyEntryOccursIn("http://host/x/A/y.html", rules));
    EXPECT_FALSE(anyEntryOccursIn("http://host/x.html", rules)) << "empty values match nothing";
    EXPECT_TRUE(anyEntryOccursIn("http://host/", std::vector<std::string>{"/"}));
}

TEST(RobotsRules, NoTextNoRules) {
    EXPECT_TRUE(parseRobotsText("").empty());
}

TEST(PageList, KeepsOrderAndAnswersMembership) {
    PageList list;
    list.append("http://host/b");
    list.append("http://host/a");
    list.append("http://host/b");
    EXPECT_EQ(list.size(), 3U);
    EXPECT_EQ(list[0], "http://host/b");
    EXPECT_EQ(list[1], "http://host/a");
    EXPECT_TRUE(list.contains("http://host/a"));
    EXPECT_FALSE(list.contains("http://host/c"));
    for (int i = 0; i < 10000; ++i) {
        list.append("http://host/" + std::to_string(i));
    }
    EXPECT_TRUE(list.contains("http://host/9999"));
    EXPECT_EQ(list[3], "http://host/0");
    list.clear();
    EXPECT_TRUE(list.empty());
    EXPECT_FALSE(list.contains("http://host/a"));
}

}  // namespace
}  // namespace loomcrest
