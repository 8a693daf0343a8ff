#include <algorithm>

#include "app/ProcessState.h"
#include "crawler/RobotsRules.h"
#include "crawler/SiteScanner.h"
#include "platform/Text.h"
#include "platform/Url.h"

namespace loomcrest {

namespace {

bool isAllowedMedia(const std::vector<std::string>& allowedMedia, std::string_view extension) {
    return std::find(allowedMedia.begin(), allowedMedia.end(), extension) != allowedMedia.end();
}

// Host and path without the scheme, a leading "www." and one trailing "/": the key by
// which a URL is judged to be inside the site.
std::string hostPathKey(std::string_view url, size_t schemeLength) {
    std::string key(url.substr(std::min(url.size(), schemeLength + 3)));
    if (key.starts_with("www.")) {
        key.erase(0, 4);
    }
    if (key.ends_with('/')) {
        key.pop_back();
    }
    return key;
}

// A query URL may be fetched only when a page extension stands just before its one "?".
bool queryMayBeQueued(std::string_view url, const std::vector<std::string>& allowedMedia) {
    if (std::count(url.begin(), url.end(), '?') >= 2) {
        return false;
    }
    const size_t mark = url.find('?');
    return std::any_of(allowedMedia.begin(), allowedMedia.end(), [&](const std::string& ext) {
        return mark >= ext.size() && url.substr(mark - ext.size(), ext.size()) == ext;
    });
}

LinkDecision dropped(LinkReason reason, std::string_view rule = {}) {
    return LinkDecision{LinkOutcome::Dropped, {}, reason, rule};
}

LinkDecision recorded(std::string url, LinkReason reason) {
    return LinkDecision{LinkOutcome::Recorded, std::move(url), reason, {}};
}

bool isWebScheme(std::string_view scheme) {
    return equalsIgnoringCase(scheme, "http") || equalsIgnoringCase(scheme, "https");
}

}  // namespace

// The site base is the same for every link of a scan, so its key is worked out once.
const SiteScanner::SiteBaseKey& SiteScanner::siteBaseKey() {
    if (siteBaseKey_.url != siteBaseURL) {
        const auto parts = parseUrl(siteBaseURL);
        siteBaseKey_.url = siteBaseURL;
        siteBaseKey_.schemeLength = parts ? parts->scheme.size() : 0;
        siteBaseKey_.hostPath = hostPathKey(siteBaseURL, siteBaseKey_.schemeLength);
    }
    return siteBaseKey_;
}

LinkDecision SiteScanner::acceptLink(std::string_view href) {
    if (href.empty()) {
        return dropped(LinkReason::Empty);
    }
    auto resolved = resolveUrl(pageBaseURLUnchanged, href);
    if (!resolved) {
        return dropped(LinkReason::NotAUrl);
    }
    std::string url = std::move(*resolved);
    if (const size_t hash = url.rfind('#'); hash != std::string::npos) {
        url.erase(hash);
    }

    const auto parts = parseUrl(url);
    if (!parts) {
        return dropped(LinkReason::NotAUrl);
    }
    const bool isMail = url.starts_with("mailto:");
    if (!parts->hasQuery && !isMail) {
        if (const size_t dot = parts->path.find('.'); dot != std::string::npos) {
            // From the first "." on, so "/docs.old/page.html" gives ".old/page.html".
            if (!isAllowedMedia(allowedMediaArray, std::string_view(parts->path).substr(dot))) {
                return dropped(LinkReason::Extension);
            }
        } else if (std::any_of(
                       allowedMediaArray.begin(), allowedMediaArray.end(),
                       [&](const std::string& ext) { return inPageList(url + "index" + ext); })) {
            return dropped(LinkReason::FolderOfIndexPage);
        }
    }

    if (const std::string* filter = firstEntryOccurringIn(url, filters)) {
        return dropped(LinkReason::Filter, *filter);
    }
    if (!ignoreRobots) {
        if (const std::string* rule = firstEntryOccurringIn(url, robotsArray)) {
            return dropped(LinkReason::RobotsRule, *rule);
        }
    }
    if (url.empty()) {
        return dropped(LinkReason::Empty);
    }

    const size_t schemeLength = parts->scheme.size();
    const SiteBaseKey& base = siteBaseKey();
    if (url.size() <= schemeLength + 3 || siteBaseURL.size() <= base.schemeLength + 3) {
        return dropped(LinkReason::NoHostOrPath);
    }
    const std::string hostPath = hostPathKey(url, schemeLength);
    if (parts->path.empty()) {
        url += '/';
    }

    // A plain prefix test: for the site "http://shop/" the host "shopfront" is inside too.
    if (!hostPath.starts_with(base.hostPath)) {
        return recorded(std::move(url), isWebScheme(parts->scheme) ? LinkReason::OffSiteHost
                                                                   : LinkReason::OtherScheme);
    }
    return queueInSiteLink(std::move(url));
}

LinkDecision SiteScanner::queueInSiteLink(std::string url) {
    std::string indexForm = url;
    for (const std::string& ext : allowedMediaArray) {
        if (url.ends_with("index" + ext)) {
            indexForm = replaceAll(url, "index" + ext, "");
            break;
        }
    }
    const std::string hostTwin = containsIgnoringCase(url, "://www.")
                                     ? replaceAll(url, "://www.", "://")
                                     : replaceAll(url, "://", "://www.");
    if (url.find('?') != std::string::npos && !queryMayBeQueued(url, allowedMediaArray)) {
        const bool manyMarks = std::count(url.begin(), url.end(), '?') >= 2;
        return recorded(std::move(url),
                        manyMarks ? LinkReason::TooManyQueryMarks : LinkReason::QueryWithoutPage);
    }
    if (inPageList(url)) {
        return recorded(std::move(url), LinkReason::Duplicate);
    }
    if (inPageList(indexForm)) {
        return recorded(std::move(url), LinkReason::IndexPageOfFolder);
    }
    if (inPageList(hostTwin)) {
        return recorded(std::move(url), LinkReason::WwwTwin);
    }
    uniquePagesLeftMArray.append(url);
    return LinkDecision{LinkOutcome::Queued, std::move(url), LinkReason::Queued, {}};
}

}  // namespace loomcrest
