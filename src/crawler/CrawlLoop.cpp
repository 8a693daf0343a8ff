#include <optional>

#include "app/ProcessState.h"
#include "crawler/ScanDriver.h"
#include "platform/HtmlDocument.h"
#include "platform/Http.h"
#include "platform/Text.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/PageTitles.h"
#include "sites/ScanViewController.h"

namespace loomcrest {

namespace {

// Four "?" in a page URL, five pieces when split at them, raise the warning.
constexpr size_t kSuspiciousQueryPieces = 5;

}  // namespace

struct ScanDriver::PageFetch {
    bool good = false;
    std::optional<std::string> body;
};

void ScanDriver::extractLinksFromPage() {
    errCont_ = true;
    lastSheetRefresh_ = {};
    lastTotalLinksRefresh_ = {};
    lastScannedLinksRefresh_ = {};
    pendingScannedLinks_.clear();
    // The list grows while it is walked; its length is read afresh at every turn.
    for (size_t i = 0; i < scanner_.uniquePagesLeftMArray.size(); ++i) {
        const std::string url = scanner_.uniquePagesLeftMArray[i];
        PageTitleLookup title = lookUpPageTitle(url, kPageTimeout);
        // A server's listing of a folder: counted, but neither mapped nor broken. (Escaping
        // the title's "&" cannot change this prefix, so the raw title is tested.)
        if (!title.title.starts_with("Index of /")) {
            if (split(url, '?').size() >= kSuspiciousQueryPieces && errCont_) {
                warnAboutQueryMarks();
            }
            if (terminateScan_) {
                break;
            }
            crawlPage(url, title);
        }
        afterPage();
    }
    refreshScannedLinks(true);
    refreshTotalLinks(true);
    refreshScanSheet(true);
    scanFinished();
}

void ScanDriver::warnAboutQueryMarks() {
    refreshScannedLinks(true);
    errCont_ = false;
    ui_.performAndWait([this] { loopingError("stop"); });
    ui_.perform([this] {
        alerts_.presentAlert(
            Alert::question("There may be an issue with the site you are scanning.",
                            "URL parameters have been found containing multiple ?s which may "
                            "be invalid.",
                            "Continue", "", "Cancel Scan"),
            [this](int returnCode) { sheetDidEndShouldStopScan(returnCode); });
        sheet_.bringWindowToFront();
    });
    {
        std::unique_lock lock(answerMutex_);
        answered_.wait(lock, [this] { return errCont_.load(); });
    }
    // Answered: the warning never comes back in this scan.
    errCont_ = false;
    ui_.performAndWait([this] { loopingError("restart"); });
}

ScanDriver::PageFetch ScanDriver::fetchPage(const std::string& url) const {
    http::Request request;
    request.url = url;
    request.timeout = kPageTimeout;
    PageFetch fetch;
    const http::Response first = http::send(request);
    if (!first.isHttp) {
        // Nothing answered, so there is no media type either: the page ends up broken.
        return fetch;
    }
    // The page is asked for twice; the second answer gives the body and the media type.
    http::Response second = http::send(request);
    fetch.good = first.statusCode < 400 && second.isHttp && second.mimeType == "text/html";
    if (second.isHttp) {
        fetch.body = std::move(second.body);
    }
    return fetch;
}

void ScanDriver::crawlPage(const std::string& url, PageTitleLookup& title) {
    PageFetch fetch = fetchPage(url);
    scanner_.setPageBaseURLs(url);
    if (!fetch.good) {
        brokenLinks_.push_back(scanner_.pageBaseURLUnchanged);
        return;
    }
    const std::string fragment = pageTitleLine(url, scanner_.totLinks, title.title);
    scanner_.fullPageData += fragment;
    scanner_.buildPageTitleSitemap(fragment, url.empty() ? "Not Found" : url);

    // Asked for once more as text; the answer is not used.
    (void)http::fetchText(url, kPageTimeout);
    if (!fetch.body || fetch.body->empty()) {
        fetch.body = http::fetchBytes(url, kPageTimeout);
    }
    // Without a body the title line stays in fullPageData and goes out with the next
    // parsed page's block.
    if (!fetch.body) {
        return;
    }
    // The same bytes parse to the same document, so the title's parse serves again.
    if (title.htmlDocument && title.bytes == fetch.body) {
        extractLinks(*title.htmlDocument);
        return;
    }
    auto document = MarkupDocument::parseHtml(*fetch.body);
    if (!document) {
        document = MarkupDocument::parseXml(*fetch.body);
    }
    if (document) {
        extractLinks(*document);
    }
}

void ScanDriver::extractLinks(const MarkupDocument& document) {
    const std::vector<MarkupNode> anchors = document.select("//a");
    ++scanner_.totLinks;  // the page itself counts as a link
    refreshTotalLinks(false);
    for (const MarkupNode& anchor : anchors) {
        ++scanner_.totLinks;
        refreshTotalLinks(false);
        if (terminateScan_) {
            break;
        }
        refreshScanSheet(false);
        const LinkDecision decision = scanner_.acceptLink(findHREFInNode(anchor));
        if (decision.outcome == LinkOutcome::Queued) {
            pendingScannedLinks_.push_back(decision.url);
            refreshScannedLinks(false);
        }
        if (decision.outcome == LinkOutcome::Dropped ||
            scanner_.pageInnerLinksMArray.contains(decision.url)) {
            continue;
        }
        scanner_.pageInnerLinksMArray.append(decision.url);
        scanner_.fullPageData += linkLine(decision.url, scanner_.totLinks, findLinkTitle(anchor));
    }
    scanner_.buildAllLinksSitemaps(scanner_.fullPageData);
    scanner_.fullPageData.clear();
    scanner_.pageInnerLinksMArray.clear();
}

void ScanDriver::afterPage() {
    ++ssf_;
    // A sitemap file that could not be written ends the scan as Cancel would.
    if (!scanner_.sitemapWriteFailure()) {
        terminateScan_ = true;
    }
    refreshScannedLinks(false);
    refreshTotalLinks(false);
    refreshScanSheet(false);
}

// Queued pages reach the scanned-links list in batches, each waited for.
void ScanDriver::refreshScannedLinks(bool force) {
    const auto now = std::chrono::steady_clock::now();
    if (pendingScannedLinks_.empty() ||
        (!force && now - lastScannedLinksRefresh_ < refreshInterval_)) {
        return;
    }
    lastScannedLinksRefresh_ = now;
    ui_.performAndWait([this] {
        for (const std::string& url : pendingScannedLinks_) {
            updateScanLinksList(url);
        }
    });
    pendingScannedLinks_.clear();
}

void ScanDriver::refreshScanSheet(bool force) {
    const auto now = std::chrono::steady_clock::now();
    if (!force && now - lastSheetRefresh_ < refreshInterval_) {
        return;
    }
    lastSheetRefresh_ = now;
    ui_.performAndWait([this] {
        handOverBrokenLinks();
        updateScanSheet();
    });
}

// Not waited for. Like the sheet it is refreshed only as often as a person can read it, and
// while one refresh is still queued another would add nothing.
void ScanDriver::refreshTotalLinks(bool force) {
    const auto now = std::chrono::steady_clock::now();
    if (!force && now - lastTotalLinksRefresh_ < refreshInterval_) {
        return;
    }
    lastTotalLinksRefresh_ = now;
    if (!totalLinksUpdateQueued_.exchange(true)) {
        ui_.perform([this] {
            totalLinksUpdateQueued_ = false;
            updateTotLink();
        });
    }
}

}  // namespace loomcrest
