#include "crawler/PageFetch.h"

#include "sitemap/LastModified.h"

namespace loomcrest {

namespace {

constexpr http::Seconds kPageTimeout{20};

bool cancelled(const http::Session& session) {
    return session.cancellation() != nullptr && session.cancellation()->isCancelled();
}

}  // namespace

bool isFolderListing(const PageTitleLookup& title) {
    return title.title.starts_with("Index of /");
}

PageBody fetchPageBody(const std::string& url, const http::Session& session) {
    http::Request request;
    request.url = url;
    request.timeout = kPageTimeout;
    request.session = &session;
    PageBody page;
    const http::Response first = http::send(request);
    page.interrupted = first.interrupted;
    if (!first.isHttp) {
        // Nothing answered, so there is no media type either: the page ends up broken.
        return page;
    }
    // The page is asked for twice; the second answer gives the body and the media type.
    http::Response second = http::send(request);
    page.interrupted = page.interrupted || second.interrupted;
    page.good = first.statusCode < 400 && second.isHttp && second.mimeType == "text/html";
    if (second.isHttp) {
        page.body = std::move(second.body);
    }
    if (!page.good) {
        return page;
    }
    page.lastModified = lastModifiedDate(url, &session);
    // Asked for once more as text; the answer is not used.
    (void)http::fetchText(url, &session);
    if (!page.body || page.body->empty()) {
        page.body = http::fetchBytes(url, &session);
    }
    page.interrupted = page.interrupted || cancelled(session);
    return page;
}

FetchedPage pageFromAnswer(http::Response answer) {
    FetchedPage fetched;
    PageBody page;
    page.interrupted = answer.interrupted;
    if (answer.isHttp) {
        page.good = answer.statusCode < 400 && answer.mimeType == "text/html";
        page.body = std::move(answer.body);
        if (page.good && answer.lastModified) {
            page.lastModified = weekYearDate(*answer.lastModified);
        }
    }
    fetched.title = pageTitleOf(page.body);
    if (!isFolderListing(fetched.title)) {
        fetched.page = std::move(page);
    }
    return fetched;
}

FetchedPage fetchPageOnce(const std::string& url, const http::Session& session) {
    http::Request request;
    request.url = url;
    request.timeout = kPageTimeout;
    request.session = &session;
    return pageFromAnswer(http::send(request));
}

FetchedPage fetchWholePage(const std::string& url, const http::Session& session, bool fetchOnce) {
    if (fetchOnce) {
        return fetchPageOnce(url, session);
    }
    FetchedPage fetched;
    fetched.title = lookUpPageTitle(url, &session);
    if (!isFolderListing(fetched.title) && !cancelled(session)) {
        fetched.page = fetchPageBody(url, session);
    }
    return fetched;
}

}  // namespace loomcrest
