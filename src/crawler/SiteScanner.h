#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "crawler/PageList.h"
#include "platform/FileSystem.h"
#include "platform/Http.h"

namespace loomcrest {

struct PieceFrame;

struct ProcessState;
struct PreparedLink;

// How long every request of a scan waits for its answer; only the date lookups of the XML
// sitemap wait less. A page that never answers thus costs this much per request it needs.
inline constexpr std::chrono::seconds kPageTimeout{20};

// What the crawl does with one anchor of a page.
enum class LinkOutcome {
    Dropped,   // nothing is recorded
    Recorded,  // listed as a link of the page, never fetched
    Queued,    // listed, and appended to the page list to be fetched later
};

// Why a link was not queued, or Queued when it was.
enum class LinkReason {
    Queued,
    Empty,              // no href at all
    NotAUrl,            // the href cannot be resolved or parsed
    Extension,          // a path whose extension is not a page extension
    FolderOfIndexPage,  // a folder whose index page is queued already
    Filter,             // one of the user's filters occurs in it
    RobotsRule,         // a Disallow value occurs in it
    NoHostOrPath,       // too short to hold a host
    OtherScheme,        // not http or https, and not in the site
    OffSiteHost,        // outside the site base
    TooManyQueryMarks,  // two or more "?"
    QueryWithoutPage,   // one "?", but no page extension before it
    Duplicate,          // queued already
    IndexPageOfFolder,  // its folder is queued already
    WwwTwin,            // the same address with or without "www." is queued already
};

struct LinkDecision {
    LinkOutcome outcome = LinkOutcome::Dropped;
    // The absolute URL the link stands for; empty when dropped.
    std::string url;
    LinkReason reason = LinkReason::Empty;
    // The filter or robots value that matched; it lives as long as the scanner's lists.
    std::string_view rule;
    // Where the URL stands in the page list, for a link queued or recorded; kNowhere when
    // it is not listed.
    size_t listedAt = PageList::kNowhere;

    // Two decisions are alike when they do the same with the same URL; the reason only
    // explains the outcome.
    bool operator==(const LinkDecision& other) const {
        return outcome == other.outcome && url == other.url;
    }
};

// The crawler. It judges every link against the site's base, the allowed page extensions,
// the user's filters and the robots rules, keeps the scan's page list, and grows the
// sitemap files page by page.
class SiteScanner {
public:
    // The filters come from `process`, and the reasons of failed start-URL probes go there.
    explicit SiteScanner(ProcessState& process) : process_(process) {}

    // Accepted page extensions; refilled at every scan start.
    void setAllowedMedia();

    // The site base: the start URL cut back to its last "/".
    void setSiteBaseURL(std::string_view siteURL);
    // The page being processed, as listed and cut back to its folder.
    void setPageBaseURLs(std::string_view pageURL);

    // Resolves one raw href of the current page and decides its fate; a queued link has
    // been appended to uniquePagesLeftMArray.
    LinkDecision acceptLink(std::string_view href);
    // The same for a link judged beforehand as far as it could be alone; takes its URL.
    LinkDecision decideLink(PreparedLink& link);

    // Resolves an href by plain text rules against the base URLs. Not used by the crawl,
    // which resolves links by RFC 3986 instead.
    std::string rebuildHREF(std::string_view href) const;

    // Probes the start URL: true only for a 200 answer to one GET, redirects not followed.
    // Another status adds its "404 - Not Found" text to vrlmpBadLinkReasonArray.
    // The answer is handed back through `answer` when one is given.
    bool httpIsValid(std::string_view url, const http::Session* session = nullptr,
                     http::Response* answer = nullptr) const;

    // Fills robotsArray from the text of the site's robots.txt.
    void loadRobotsRules(std::string_view robotsText);

    // The folder whose sitemap files the two builders append to; forgets an earlier
    // failed write.
    void setSitemapFolder(std::string folder);
    // Lets go of the sitemap files the builders hold open, flushed to the disk; a failure
    // to do so counts as a failed write.
    void releaseSitemapFiles();
    // Appends a page's title line to the three pages-only layouts and its entry to
    // "sitemap.xml". `plainLink` is the page URL.
    void buildPageTitleSitemap(std::string_view fragment, std::string_view plainLink);
    // The same with the page's <lastmod> date already at hand.
    void buildPageTitleSitemap(std::string_view fragment, std::string_view plainLink,
                               std::string_view lastModified);
    // Appends a page block to the three all-links layouts; a block that is not valid UTF-8
    // is dropped.
    void buildAllLinksSitemaps(std::string_view pageData);
    // The first write to the sitemap files that failed since setSitemapFolder; once one
    // has failed the builders append nothing more, so no file gets a piece after a gap.
    const WriteResult& sitemapWriteFailure() const { return writeFailure_; }

    std::string siteBaseURL;
    std::string pageBaseURL;
    std::string pageBaseURLUnchanged;
    std::vector<std::string> allowedMediaArray;
    PageList uniquePagesLeftMArray;
    std::vector<std::string> robotsArray;
    std::string fullPageData;
    // The user's filters, copied when a scan starts: the crawl never reads the window's list.
    std::vector<std::string> filters;

    // The ignore-robots check box of the site being scanned.
    std::atomic<bool> ignoreRobots{false};

    // The running link number of the LINKID markers; read by the window while a scan runs.
    std::atomic<int32_t> totLinks{0};
    // Cells filled in the open row of each table layout.
    int32_t twoColCountPO = 0;
    int32_t threeColCountPO = 0;
    int32_t twoColCountAP = 0;
    int32_t threeColCountAP = 0;

private:
    void appendToSitemap(std::string_view name, std::string_view piece);
    void appendToSitemap(std::string_view name, std::initializer_list<std::string_view> pieces);
    void appendFramed(std::string_view name, const PieceFrame& frame, std::string_view item);
    bool inPageList(const std::string& url) const { return uniquePagesLeftMArray.contains(url); }

    ProcessState& process_;
    std::string sitemapFolder_;
    AppendingFiles sitemapFiles_;
    WriteResult writeFailure_;
    std::string sitemapPath_;
    // The URLs of folder index pages tested for links to folders, built here one by one.
    std::string indexPageProbe_;
};

}  // namespace loomcrest
