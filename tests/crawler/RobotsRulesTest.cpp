#include "crawler/RobotsRules.h"

#include <gtest/gtest.h>

#include "crawler/PageList.h"

namespace loomcrest {
namespace {

// Every Disallow line counts whatever its group; carriage returns stay and match nothing;
// matching is a substring test ignoring case, and empty values match nothing.
TEST(RobotsRules, DisallowValuesAreSubstringsOfTheUrl) {
    EXPECT_EQ(
        parseRobotsText(
            "User-agent: somebot\nDisallow: /private\n# Disallow: /comment\nAllow: /open\n"
            "User-agent: *\nDisallow: /tmp/\ndisallow: /lower\nDisallow:/tight\nDisallow: \n"),
        (std::vector<std::string>{"/private", "/tmp/", ""}));
    EXPECT_TRUE(parseRobotsText("").empty());
    const auto withReturn = parseRobotsText("User-agent: *\r\nDisallow: /private\r\n");
    ASSERT_EQ(withReturn, std::vector<std::string>{"/private\r"});
    EXPECT_FALSE(anyEntryOccursIn("http://host/private/x.html", withReturn));
    const std::vector<std::string> rules = {"/a", ""};
    EXPECT_TRUE(anyEntryOccursIn("http://host/x/A/y.html", rules));
    EXPECT_FALSE(anyEntryOccursIn("http://host/x.html", rules));
    EXPECT_TRUE(anyEntryOccursIn("http://host/", std::vector<std::string>{"/"}));
}

// The index holds views of the listed URLs, which must stay where they are as the list grows.
TEST(PageList, KeepsOrderAndAnswersMembershipAsItGrows) {
    PageList list;
    for (int i = 0; i < 10000; ++i) {
        list.append("http://host/" + std::to_string(i % 9999));
    }
    EXPECT_EQ(list.size(), 10000U);
    EXPECT_EQ(list[9999], "http://host/0");
    EXPECT_TRUE(list.contains("http://host/9998"));
    EXPECT_FALSE(list.contains("http://host/9999"));
    list.clear();
    EXPECT_TRUE(list.empty());
    EXPECT_FALSE(list.contains("http://host/0"));
}

}  // namespace
}  // namespace loomcrest
