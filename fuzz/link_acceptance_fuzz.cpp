// Link acceptance: every line is an href of a page deep in a site, judged as the crawl
// judges the anchors of a page, against robots rules and a filter.
// Each href is also resolved the fast way (UrlResolver::resolveWithParts) against that page
// and against pages of other shapes, and compared with the slow way: resolve, cut at the
// last "#", parse the text. Any difference in text, parts or failure calls std::abort().
#include <cstdlib>

#include "FuzzInput.h"
#include "app/ProcessState.h"
#include "crawler/SiteScanner.h"
#include "platform/Url.h"

namespace {

using namespace loomcrest;

std::optional<ResolvedUrl> resolvedTheSlowWay(const UrlResolver& page, std::string_view href) {
    auto text = page.resolve(href);
    if (!text) {
        return std::nullopt;
    }
    if (const size_t hash = text->rfind('#'); hash != std::string::npos) {
        text->erase(hash);
    }
    auto parts = parseUrl(*text);
    if (!parts) {
        return std::nullopt;
    }
    return ResolvedUrl{std::move(*text), std::move(*parts)};
}

bool same(const std::optional<ResolvedUrl>& a, const std::optional<ResolvedUrl>& b) {
    if (!a || !b) {
        return a.has_value() == b.has_value();
    }
    return a->text == b->text && a->parts.scheme == b->parts.scheme &&
           a->parts.host == b->parts.host && a->parts.path == b->parts.path &&
           a->parts.hasQuery == b->parts.hasQuery && a->parts.query == b->parts.query;
}

void compareWays(const UrlResolver& page, std::string_view href) {
    if (!same(page.resolveWithParts(href), resolvedTheSlowWay(page, href))) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr std::string_view kPageUrl = "http://example.com/dir/sub/page.php?x=1";
    static const UrlResolver pages[] = {
        UrlResolver(kPageUrl),
        UrlResolver("https://[::1]:8080/a/b/?q#f"),
        UrlResolver("HTTP://user@127.0.0.1:80//x/./y/"),
        UrlResolver("http:/a/b"),
        UrlResolver("http://h"),
        UrlResolver("ftp://h/p"),
        UrlResolver("relative/base"),
    };
    ProcessState process;
    SiteScanner scanner(process);
    scanner.setAllowedMedia();
    scanner.setSiteBaseURL("http://example.com/dir/index.html");
    scanner.setPageBaseURLs(kPageUrl);
    scanner.loadRobotsRules("User-agent: *\nDisallow: /dir/private\n");
    scanner.filters = {"tmp"};
    for (const std::string_view href : fuzz::lines(fuzz::asText(data, size))) {
        (void)scanner.acceptLink(href);
        (void)scanner.rebuildHREF(href);
        for (const UrlResolver& page : pages) {
            compareWays(page, href);
        }
    }
    return 0;
}
