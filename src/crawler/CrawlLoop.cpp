#include <optional>
#include <string_view>

#include "app/ProcessState.h"
#include "crawler/FetchAhead.h"
#include "crawler/PageFetch.h"
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
// Pages fetched ahead and not yet dealt with, for each connection: enough to keep every
// connection busy while the worker deals with a page, few enough to keep memory flat.
constexpr size_t kPagesAheadPerConnection = 4;

bool hasManyQueryMarks(std::string_view url) {
    return split(url, '?').size() >= kSuspiciousQueryPieces;
}

}  // namespace

void ScanDriver::extractLinksFromPage() {
    errCont_ = true;
    lastSheetRefresh_ = {};
    lastTotalLinksRefresh_ = {};
    lastScannedLinksRefresh_ = {};
    pendingScannedLinks_.clear();
    // The scanner's rules stay as they are until the scan ends.
    judge_.emplace(scanner_);
    const int connections = crawlSettings_.connections();
    // Even one connection fetches ahead, on a thread of its own, so that the next page's
    // requests run while this one is dealt with; they come in the same order as ever.
    FetchAhead ahead(connections, static_cast<size_t>(connections) * kPagesAheadPerConnection,
                     [this, oneConnection = connections == 1](const std::string& url) {
                         return fetchPageAhead(url, oneConnection);
                     });
    // The list grows while it is walked; its length is read afresh at every turn.
    for (size_t i = 0; i < scanner_.uniquePagesLeftMArray.size(); ++i) {
        if (!crawlNextPage(i, ahead)) {
            break;
        }
        afterPage();
    }
    refreshScannedLinks(true);
    refreshTotalLinks(true);
    refreshScanSheet(true);
    scanFinished();
}

// On a fetching thread. With one connection, while the warning about a URL with four "?"
// may still come, such a page's title is fetched alone and the thread waits: its page is
// asked for only once the warning has been answered, and nothing after it before that.
FetchedPage ScanDriver::fetchPageAhead(const std::string& url, bool oneConnection) {
    const bool fetchOnce = crawlSettings_.fetchOnce();
    if (oneConnection && errCont_ && hasManyQueryMarks(url)) {
        FetchedPage fetched;
        if (fetchOnce) {
            fetched = fetchPageOnce(url, *session_);
        } else {
            fetched.title = lookUpPageTitle(url, kPageTimeout, session_.get());
        }
        fetched.holdsFetching = true;
        return fetched;
    }
    // The fetching threads read the links as well, so that the crawl only records them.
    FetchedPage fetched = fetchWholePage(url, *session_, fetchOnce);
    prepareLinks(*judge_, url, fetched);
    return fetched;
}

// Fetches and deals with the page at `place` of the list; false when the scan stops there.
bool ScanDriver::crawlNextPage(size_t place, FetchAhead& ahead) {
    const std::string url(scanner_.uniquePagesLeftMArray[place]);
    FetchedPage fetched = takePage(place, ahead);
    // A server's listing of a folder: counted, but neither mapped nor broken.
    if (isFolderListing(fetched.title)) {
        if (fetched.holdsFetching) {
            ahead.resume();
        }
        return true;
    }
    if (hasManyQueryMarks(url) && errCont_) {
        warnAboutQueryMarks();
    }
    if (terminateScan_) {
        return false;
    }
    if (fetched.holdsFetching) {
        // The page itself, on the connection that asked for its title; then fetching goes on.
        ahead.resume([&] {
            if (!fetched.page) {
                fetched.page = fetchPageBody(url, *session_);
            }
        });
    }
    // Without its page only when a cancel came between its title and the rest; as a cancel
    // breaking into a page's requests, what they gave is not dealt with.
    if (!fetched.page || fetched.page->interrupted) {
        return false;
    }
    crawlPage(place, url, fetched);
    ahead.giveBack(std::move(fetched));
    return true;
}

// The page at `place`, fetched ahead. The pages after it are handed over as far as the
// window allows, before the wait and again at once after it, so that the fetching goes on
// while this page is dealt with. The start page's answer to the probe, at hand with
// fetch-once, serves as it is.
FetchedPage ScanDriver::takePage(size_t place, FetchAhead& ahead) {
    if (startAnswer_) {  // the start page, at place 0
        ahead.handOverFetched(pageFromAnswer(std::move(*startAnswer_)));
        startAnswer_.reset();
    }
    const PageList& pages = scanner_.uniquePagesLeftMArray;
    const auto handOverUpTo = [&](size_t nextToTake) {
        while (ahead.handedOver() < pages.size() && ahead.hasRoom(nextToTake)) {
            ahead.handOver(std::string(pages[ahead.handedOver()]));
        }
    };
    handOverUpTo(place);
    FetchedPage page = ahead.take(place);
    handOverUpTo(place + 1);
    return page;
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

void ScanDriver::crawlPage(size_t place, const std::string& url, FetchedPage& fetched) {
    PageBody& page = *fetched.page;
    scanner_.setPageBaseURLs(url);
    if (!page.good) {
        brokenLinks_.push_back(scanner_.pageBaseURLUnchanged);
        brokenLinkRecorder_.pageBroken(place, std::move(page.failure));
        return;
    }
    // A title line left over from a page without links may stand before this one.
    const size_t lineStart = scanner_.fullPageData.size();
    appendPageTitleLine(scanner_.fullPageData, url, scanner_.totLinks, fetched.title.title);
    const std::string_view line = std::string_view(scanner_.fullPageData).substr(lineStart);
    scanner_.buildPageTitleSitemap(line, url.empty() ? "Not Found" : url, page.lastModified);

    // Without a body, or when the body parsed to no document, the title line stays in
    // fullPageData and goes out with the next parsed page's block.
    if (!page.body) {
        return;
    }
    prepareLinks(*judge_, url, fetched);
    if (fetched.links) {
        extractLinks(place, *fetched.links);
    }
}

void ScanDriver::extractLinks(size_t place, std::vector<PreparedLink>& links) {
    ++scanner_.totLinks;  // the page itself counts as a link
    refreshTotalLinks(false);
    for (PreparedLink& link : links) {
        ++scanner_.totLinks;
        refreshTotalLinks(false);
        if (terminateScan_) {
            break;
        }
        refreshScanSheet(false);
        const LinkDecision decision = scanner_.decideLink(link);
        if (decision.outcome == LinkOutcome::Queued) {
            pendingScannedLinks_.push_back(decision.url);
            refreshScannedLinks(false);
        } else if (explanations_ != nullptr) {
            explanations_->linkNotQueued(scanner_.pageBaseURLUnchanged, link.href, decision);
        }
        if (decision.outcome == LinkOutcome::Dropped) {
            continue;
        }
        if (link.repeatInPage) {
            brokenLinkRecorder_.linkTo(decision.listedAt);
            continue;
        }
        appendLinkLine(scanner_.fullPageData, decision.url, scanner_.totLinks, link.linkText);
        noteLinkForBrokenPages(place, decision, link.linkText);
    }
    scanner_.buildAllLinksSitemaps(scanner_.fullPageData);
    scanner_.fullPageData.clear();
}

// A queued link is the first to its page; any other only adds to the count of its target.
void ScanDriver::noteLinkForBrokenPages(size_t place, const LinkDecision& decision,
                                        std::string_view linkText) {
    if (decision.outcome == LinkOutcome::Queued) {
        brokenLinkRecorder_.pageQueued(decision.listedAt, place, linkText);
    } else {
        brokenLinkRecorder_.linkTo(decision.listedAt);
    }
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
