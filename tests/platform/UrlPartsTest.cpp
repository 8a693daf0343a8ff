#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/Url.h"

namespace loomcrest {
namespace {

std::string described(const UrlParts& parts) {
    return parts.scheme + "|" + parts.host + "|" + parts.path +
           (parts.hasQuery ? "?" + parts.query : "");
}

// The parts a link is judged by, from the resolution, must be those of its printed text
// read again; the shapes here are the ones where the two could part.
TEST(ResolveWithParts, GivesTheTextWithoutFragmentAndThePartsOfThatText) {
    const std::string page = "http://example.com/dir/sub/page.php?x=1";
    struct Case {
        std::string base;
        std::string href;
        std::optional<std::string> text;
        std::string parts;
    };
    const std::vector<Case> cases = {
        {page, "../a.html#top", "http://example.com/dir/a.html", "http|example.com|/dir/a.html"},
        {page, "/", "http://example.com/", "http|example.com|/"},
        {page, "//example.com", "http://example.com", "http|example.com|"},
        {page, "?#f", "http://example.com/dir/sub/page.php?",
         "http|example.com|/dir/sub/page.php?"},
        {page, "#", "http://example.com/dir/sub/page.php?x=1",
         "http|example.com|/dir/sub/page.php?x=1"},
        {page, "HtTpS://u@WWW.H:/A%2Fb%20c/..//d", "HtTpS://u@WWW.H://d", "HtTpS|WWW.H|//d"},
        {page, "//127.0.0.1:8080/%00x.html?q", "http://127.0.0.1:8080/%00x.html?q",
         "http|127.0.0.1|/?q"},
        {page, "//[::1]/x", "http://[0000:0000:0000:0000:0000:0000:0000:0001]/x",
         "http|0000:0000:0000:0000:0000:0000:0000:0001|/x"},
        {page, "http://[v7.abc]/x", "http://[v7.abc]/x", "http|v7.abc|/x"},
        {page, "http:///x", "http:///x", "http||/x"},
        {page, "ftp://h/..//x", "ftp://h//x", "ftp|h|//x"},
        {page, "mailto:a@b?subject=x#f", "mailto:a@b?subject=x", "mailto||a@b?subject=x"},
        {"http:/a/b", "/.//x", "http://x", "http|x|"},
        {"http:/a/b", "..//x", "http:/.//x", "http||/.//x"},
        {"http:a", ".//x", "http:/x", "http||/x"},
        {"https://[::1]:8080/a/b/?q#f", "c",
         "https://[0000:0000:0000:0000:0000:0000:0000:0001]:8080/a/b/c",
         "https|0000:0000:0000:0000:0000:0000:0000:0001|/a/b/c"},
        {page, "a b", std::nullopt, ""},
        {"relative/base", "x.html", std::nullopt, ""},
    };
    for (const auto& [base, href, text, parts] : cases) {
        const auto resolved = UrlResolver(base).resolveWithParts(href);
        ASSERT_EQ(resolved.has_value(), text.has_value()) << base << " " << href;
        if (!resolved) {
            continue;
        }
        EXPECT_EQ(resolved->text, *text) << base << " " << href;
        EXPECT_EQ(described(resolved->parts), parts) << base << " " << href;
        const auto reread = parseUrl(resolved->text);
        ASSERT_TRUE(reread.has_value()) << resolved->text;
        EXPECT_EQ(described(resolved->parts), described(*reread)) << resolved->text;
    }
}

}  // namespace
}  // namespace loomcrest
