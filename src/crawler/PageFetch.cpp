#include "crawler/PageFetch.h"

#include <unordered_set>

#include "crawler/SiteScanner.h"
#include "platform/HtmlDocument.h"
#include "sitemap/LastModified.h"

namespace loomcrest {

namespace {

bool cancelled(const http::Session& session) {
    return session.cancellation() != nullptr && session.cancellation()->isCancelled();
}

// The status of the first answer when it failed, else what was wrong with the second.
std::string pageFailure(const http::Response& first, const http::Response& second) {
    if (first.statusCode >= 400) {
        return http::statusText(first.statusCode);
    }
    if (!second.isHttp) {
        return second.errorText;
    }
    if (second.statusCode >= 400) {
        return http::statusText(second.statusCode);
    }
    const std::string type = second.mimeType.empty() ? "no media type" : second.mimeType;
    return http::statusText(second.statusCode) + " (" + type + ", not text/html)";
}

std::vector<PreparedLink> prepareAnchors(const LinkJudge& judge, std::string_view pageUrl,
                                         const std::vector<AnchorOutline>& anchors) {
    std::vector<PreparedLink> links;
    // Views of the links' own URLs: the vector never grows past its reserve.
    links.reserve(anchors.size());
    std::unordered_set<std::string_view> urls;
    const UrlResolver page(pageUrl);
    for (const AnchorOutline& anchor : anchors) {
        PreparedLink& link = links.emplace_back(judge.prepare(page, anchor.href));
        if (link.decision.outcome == LinkOutcome::Dropped) {
            continue;
        }
        if (!urls.insert(link.decision.url).second) {
            link.repeatInPage = true;
        } else {
            link.linkText = findLinkTitle(anchor);
        }
    }
    return links;
}

}  // namespace

void prepareLinks(const LinkJudge& judge, std::string_view pageUrl, FetchedPage& fetched) {
    if (!fetched.page || !fetched.page->good || !fetched.page->body || fetched.linksPrepared) {
        return;
    }
    PageTitleLookup& title = fetched.title;
    std::string& body = *fetched.page->body;
    // The same bytes read the same, so what the title lookup read serves again.
    if (title.htmlOutline && title.bytes == body) {
        fetched.links = prepareAnchors(judge, pageUrl, title.htmlOutline->anchors);
    } else if (const auto outline = readHtmlOutline(body)) {
        fetched.links = prepareAnchors(judge, pageUrl, outline->anchors);
    } else if (const auto document = MarkupDocument::parseXml(body)) {
        fetched.links = prepareAnchors(judge, pageUrl, outlineOfDocument(*document).anchors);
    }
    fetched.linksPrepared = true;
    title.htmlOutline.reset();
    title.bytes.reset();
    body = std::string();
}

bool isFolderListing(const PageTitleLookup& title) {
    return title.title.starts_with("Index of /");
}

PageBody fetchPageBody(const std::string& url, const http::Session& session) {
    PageBody page;
    const auto send = [&](std::string_view method, http::Seconds timeout) {
        http::Request request;
        request.url = url;
        request.method = method;
        request.timeout = timeout;
        request.session = &session;
        http::Response response = http::send(request);
        page.interrupted = page.interrupted || response.interrupted;
        return response;
    };
    const http::Response first = send("GET", kPageTimeout);
    if (!first.isHttp) {
        // Nothing answered, so there is no media type either: the page ends up broken.
        page.failure = first.errorText;
        return page;
    }
    // The page is asked for twice; the second answer gives the body and the media type.
    http::Response second = send("GET", kPageTimeout);
    page.good = first.statusCode < 400 && second.isHttp && second.mimeType == "text/html";
    if (second.isHttp) {
        page.body = std::move(second.body);
    }
    if (!page.good) {
        page.failure = pageFailure(first, second);
        return page;
    }
    const http::Response dated = send("HEAD", kLastModifiedTimeout);
    if (dated.lastModified) {
        page.lastModified = weekYearDate(*dated.lastModified);
    }
    // Asked for once more as text; the answer is not used.
    (void)send("GET", kPageTimeout);
    if (!page.body || page.body->empty()) {
        http::Response again = send("GET", kPageTimeout);
        page.body = again.isHttp ? std::optional(std::move(again.body)) : std::nullopt;
    }
    return page;
}

FetchedPage pageFromAnswer(http::Response answer) {
    FetchedPage fetched;
    PageBody page;
    page.interrupted = answer.interrupted;
    if (!answer.isHttp) {
        page.failure = answer.errorText;
    } else {
        page.good = answer.statusCode < 400 && answer.mimeType == "text/html";
        if (!page.good) {
            // The one answer stands for both fetches of a page asked for twice.
            page.failure = pageFailure(answer, answer);
        }
        page.body = std::move(answer.body);
        if (page.good && answer.lastModified) {
            page.lastModified = weekYearDate(*answer.lastModified);
        }
    }
    if (page.body) {
        fetched.title = pageTitleOfBytes(*page.body);
    } else {
        fetched.title.title = kNoPageTitle;
    }
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
    fetched.title = lookUpPageTitle(url, kPageTimeout, &session);
    if (!isFolderListing(fetched.title) && !cancelled(session)) {
        fetched.page = fetchPageBody(url, session);
    }
    return fetched;
}

}  // namespace loomcrest
