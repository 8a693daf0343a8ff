#include "sites/SiteInputCheck.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace loomcrest {
namespace {

const std::string kBlankName = "The site name field cannot be left blank.";
const std::string kForbidden =
    "\nThe site name cannot contain the following characters: / \\ . or ?";
const std::string kBlankURL = "\nThe site URL field cannot be left blank.";
const std::string kFtp =
    "\nURLs must begin http:// or https://\nftp:// etc scans are not available.";

// Every problem is listed in order: a blank around a field empties it, the forbidden
// characters' line comes once per kind of character, and text no folder or list can hold is
// refused after the other problems.
TEST(SiteInput, EveryProblemIsListedInOrder) {
    const std::string control = "\nThe site name cannot contain control characters";
    const std::string notUtf8 = "\nThe site name is not valid UTF-8 text";
    const std::string tooLong = "\nThe site name is too long";
    const std::string urlControl = "\nThe site URL cannot contain control characters";
    const struct {
        std::string name;
        std::string url;
        std::string errors;
    } cases[] = {
        {"", "", kBlankName + kBlankURL},
        {"a/b\\c.d?e", "ftp://host/", kForbidden + kForbidden + kForbidden + kForbidden + kFtp},
        {"", "ftps://host/", kBlankName + kFtp},
        {"a..b", "example.com", kForbidden},
        {" Example", "example.com", kBlankName},
        {"Example ", "example.com", kBlankName},
        {"Example", " example.com", kBlankURL},
        {"My Site", "example.com", ""},
        {"a\x1f", "example.com", control},
        {"a\x7f", "example.com", control},
        {std::string("a\xc2\x80") + "b", "example.com", control},
        {std::string("a\xc2\x9f") + "b", "example.com", control},
        {"a\xc2", "example.com", notUtf8},
        {"\xc3\xa9t\xc3\xa9 \xc2\xa0\xe2\x80\x94", "example.com", ""},
        {std::string(200, 'n'), "example.com", ""},
        {std::string(201, 'n'), "example.com", tooLong},
        {std::string(100, '\x01') + "b\xff" + std::string(100, 'n'), "example.com",
         control + notUtf8 + tooLong},
        {"a.b", "example.com/\tx", kForbidden + urlControl},
        {"a", "http://h/\xe9.html", "\nThe site URL is not valid UTF-8 text"},
    };
    for (const auto& c : cases) {
        const SiteInput input = checkSiteInput(c.name, c.url);
        EXPECT_EQ(input.errors, c.errors) << testing::PrintToString(c.name);
        EXPECT_EQ(input.isOK(), c.errors.empty()) << testing::PrintToString(c.name);
    }
    EXPECT_EQ(checkSiteInput("My Site", "example.com").name, "My Site");
}

// A host alone gets a scheme and a slash; a page extension anywhere in the address keeps it
// without one; the scheme is compared case-sensitively; spaces become escapes; ftp empties it.
TEST(SiteInput, TheURLIsCompletedAsTyped) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"https://example.com/", "https://example.com/"},
        {"example.com", "http://example.com/"},
        {"example.com/index.php", "http://example.com/index.php"},
        {"http://example.com/Home.HTML", "http://example.com/Home.HTML"},
        {"http://www.php.net", "http://www.php.net"},
        {"HTTP://example.com/", "http://HTTP://example.com/"},
        {"http://example.com/my pages", "http://example.com/my%20pages/"},
        {"ftp://example.com/", "/"},
    };
    for (const auto& [typed, url] : cases) {
        EXPECT_EQ(checkSiteInput("A", typed).url, url) << typed;
    }
    EXPECT_TRUE(checkSiteInput("A", "FTP://example.com/").isOK());
}

}  // namespace
}  // namespace loomcrest
