#include "sites/SiteInputCheck.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace loomcrest {
namespace {

constexpr const char* kBlankName = "The site name field cannot be left blank.";
constexpr const char* kForbidden =
    "\nThe site name cannot contain the following characters: / \\ . or ?";
constexpr const char* kBlankURL = "\nThe site URL field cannot be left blank.";
constexpr const char* kFtp =
    "\nURLs must begin http:// or https://\nftp:// etc scans are not available.";

TEST(SiteInputMessages, ValidInputPassesUnchanged) {
    const SiteInput input = checkSiteInput("Example", "https://example.com/");
    EXPECT_TRUE(input.isOK());
    EXPECT_EQ(input.name, "Example");
    EXPECT_EQ(input.url, "https://example.com/");
}

TEST(SiteInputMessages, EveryProblemIsListedInOrder) {
    EXPECT_EQ(checkSiteInput("", "").errors, std::string(kBlankName) + kBlankURL);
    EXPECT_EQ(checkSiteInput("a/b\\c.d?e", "ftp://host/").errors,
              std::string(kForbidden) + kForbidden + kForbidden + kForbidden + kFtp);
    EXPECT_EQ(checkSiteInput("", "ftps://host/").errors, std::string(kBlankName) + kFtp);
}

TEST(SiteInputMessages, ForbiddenCharacterLineAppearsOncePerKindOfCharacter) {
    EXPECT_EQ(checkSiteInput("a.b/c", "example.com").errors, std::string(kForbidden) + kForbidden);
    EXPECT_EQ(checkSiteInput("a..b", "example.com").errors, kForbidden);
}

TEST(SiteInputMessages, TextNoFolderOrListCanHoldIsRefusedAfterTheOtherProblems) {
    const std::string control = "\nThe site name cannot contain control characters";
    const std::string notUtf8 = "\nThe site name is not valid UTF-8 text";
    const std::string tooLong = "\nThe site name is too long";
    const std::string urlControl = "\nThe site URL cannot contain control characters";
    const std::string urlNotUtf8 = "\nThe site URL is not valid UTF-8 text";
    const struct {
        std::string name;
        std::string url;
        std::string errors;
    } cases[] = {
        {"a\tb", "example.com", control},
        {"a\nb", "example.com", control},
        {"a\rb", "example.com", control},
        {"a\x1b[31mb", "example.com", control},
        {std::string("a\0b", 3), "example.com", control},
        {"a\x7f", "example.com", control},
        {"a\xc2\x85"
         "b",
         "example.com", control},
        {"a\xc2\x9f"
         "b",
         "example.com", control},
        {"caf\xe9", "example.com", notUtf8},
        {"a\xc2", "example.com", notUtf8},
        {"\xc3\xa9t\xc3\xa9 \xc2\xa0\xe2\x80\x94", "example.com", ""},
        {std::string(200, 'n'), "example.com", ""},
        {std::string(201, 'n'), "example.com", tooLong},
        {std::string(100, '\x01') + "b\xff" + std::string(100, 'n'), "example.com",
         control + notUtf8 + tooLong},
        {"a.b", "example.com/\tx", kForbidden + urlControl},
        {"a", "http://h/\xe9.html", urlNotUtf8},
        {"\t", "\n", control + urlControl},
        {"", "", kBlankName + std::string(kBlankURL)},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(checkSiteInput(c.name, c.url).errors, c.errors) << testing::PrintToString(c.name);
    }
}

TEST(SiteInputBlanks, ASurroundingBlankEmptiesTheField) {
    EXPECT_EQ(checkSiteInput(" Example", "example.com").errors, kBlankName);
    EXPECT_EQ(checkSiteInput("Example ", "example.com").errors, kBlankName);
    EXPECT_EQ(checkSiteInput("Example", " example.com").errors, kBlankURL);
    EXPECT_EQ(checkSiteInput("Example", "example.com ").errors, kBlankURL);
}

TEST(SiteInputBlanks, InnerBlanksSurvive) {
    const SiteInput input = checkSiteInput("My Site", "example.com");
    EXPECT_TRUE(input.isOK());
    EXPECT_EQ(input.name, "My Site");
}

// A host alone gets a scheme and a slash; a page extension anywhere in the address keeps it
// without one; the scheme is compared case-sensitively; spaces become escapes.
TEST(SiteInputURL, IsCompletedAsTyped) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"example.com", "http://example.com/"},
        {"localhost:8080", "http://localhost:8080/"},
        {"example.com/index.php", "http://example.com/index.php"},
        {"http://example.com/Home.HTML", "http://example.com/Home.HTML"},
        {"https://example.com/dir/", "https://example.com/dir/"},
        {"http://www.php.net", "http://www.php.net"},
        {"http://example.com/a.aspx/more", "http://example.com/a.aspx/more"},
        {"HTTP://example.com/", "http://HTTP://example.com/"},
        {"http://example.com/my pages", "http://example.com/my%20pages/"},
        {"example.com/a b.htm", "http://example.com/a%20b.htm"},
        {"mailto:me@example.com", "http://mailto:me@example.com/"},
    };
    for (const auto& [typed, url] : cases) {
        EXPECT_EQ(checkSiteInput("A", typed).url, url) << typed;
    }
    EXPECT_TRUE(checkSiteInput("A", "FTP://example.com/").isOK());
}

TEST(SiteInputURL, FtpEmptiesTheURL) {
    const SiteInput input = checkSiteInput("A", "ftp://example.com/");
    EXPECT_EQ(input.errors, kFtp);
    EXPECT_EQ(input.url, "/");
}

}  // namespace
}  // namespace loomcrest
