#pragma once

#include <optional>
#include <string>

#include "crawler/LinkJudge.h"
#include "platform/Http.h"
#include "sitemap/PageTitles.h"

// The requests the crawl makes for one page, apart from dealing with the answers, so that
// they can be made ahead of time on other connections.
namespace loomcrest {

// What the page's own fetch gave.
struct PageBody {
    // An HTTP answer below 400 whose media type is exactly "text/html".
    bool good = false;
    // The body to read the links from; nothing when no HTTP answer came.
    std::optional<std::string> body;
    // The <lastmod> date of a good page.
    std::string lastModified;
    // The user's cancel broke into the requests; the page must not be dealt with.
    bool interrupted = false;
    // Why a page that is not good failed: "404 - Not Found", "Connection refused", ...
    std::string failure;
};

struct FetchedPage {
    PageTitleLookup title;
    // Nothing for a server's folder listing, whose page is never fetched, and for a page
    // whose fetch the cancel stopped after its title.
    std::optional<PageBody> page;
    // Set once the page's links have been read: then the documents are gone, the body is
    // empty, and `links` holds every anchor in document order, or nothing when the body
    // parsed to no document.
    bool linksPrepared = false;
    std::optional<std::vector<PreparedLink>> links;
    // The fetching stopped here until the crawl has dealt with what it fetched so far.
    bool holdsFetching = false;
};

// Whether the title marks a server's listing of a folder. (Escaping the title's "&" cannot
// change this prefix, so the raw title is tested.)
bool isFolderListing(const PageTitleLookup& title);

// The page fetched twice, its date asked for with HEAD, once more as text, and, when that
// gave no body, fetched once more: as many requests, in that order, as a page needs when
// each URL may be asked for again. A page that is not good gets only the two GETs.
PageBody fetchPageBody(const std::string& url, const http::Session& session);

// One GET that serves the title, the page, its media type and its date.
FetchedPage fetchPageOnce(const std::string& url, const http::Session& session);
// The same from an answer already at hand.
FetchedPage pageFromAnswer(http::Response answer);

// Reads the anchors of a good page that has a body, judges them as far as they can be
// judged alone and frees the parsed documents; nothing for any other page.
void prepareLinks(const LinkJudge& judge, std::string_view pageUrl, FetchedPage& fetched);

// The whole of a page's requests: with `fetchOnce` one GET, otherwise the title's two
// fetches, then, unless the page is a folder listing or the session was cancelled
// meanwhile, fetchPageBody.
FetchedPage fetchWholePage(const std::string& url, const http::Session& session, bool fetchOnce);

}  // namespace loomcrest
