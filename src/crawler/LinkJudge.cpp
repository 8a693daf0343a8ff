#include "crawler/LinkJudge.h"

#include <algorithm>

#include "crawler/RobotsRules.h"
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

LinkJudge::LinkJudge(const SiteScanner& scanner)
    : allowedMedia_(scanner.allowedMediaArray),
      filters_(scanner.filters),
      robots_(scanner.robotsArray),
      ignoreRobots_(scanner.ignoreRobots),
      siteBaseUrl_(scanner.siteBaseURL) {
    const auto parts = parseUrl(siteBaseUrl_);
    baseSchemeLength_ = parts ? parts->scheme.size() : 0;
    baseHostPath_ = hostPathKey(siteBaseUrl_, baseSchemeLength_);
}

PreparedLink LinkJudge::prepare(std::string_view pageUrl, std::string_view href) const {
    return prepare(UrlResolver(pageUrl), href);
}

PreparedLink LinkJudge::prepare(const UrlResolver& page, std::string_view href) const {
    PreparedLink link;
    link.href = href;
    auto resolved = href.empty() ? std::nullopt : page.resolveWithParts(href);
    if (!resolved) {
        link.decision = dropped(href.empty() ? LinkReason::Empty : LinkReason::NotAUrl);
        return link;
    }
    std::string url = std::move(resolved->text);
    const UrlParts& parts = resolved->parts;
    if (!parts.hasQuery && !url.starts_with("mailto:")) {
        if (const size_t dot = parts.path.find('.'); dot != std::string::npos) {
            // From the first "." on, so "/docs.old/page.html" gives ".old/page.html".
            if (!isAllowedMedia(allowedMedia_, std::string_view(parts.path).substr(dot))) {
                link.decision = dropped(LinkReason::Extension);
                return link;
            }
        } else {
            link.folderTestUrl = url;
        }
    }
    if (const std::string* filter = firstEntryOccurringIn(url, filters_)) {
        link.decision = dropped(LinkReason::Filter, *filter);
    } else if (const std::string* rule =
                   ignoreRobots_ ? nullptr : firstEntryOccurringIn(url, robots_)) {
        link.decision = dropped(LinkReason::RobotsRule, *rule);
    } else if (url.empty() || url.size() <= parts.scheme.size() + 3 ||
               siteBaseUrl_.size() <= baseSchemeLength_ + 3) {
        link.decision = dropped(url.empty() ? LinkReason::Empty : LinkReason::NoHostOrPath);
    } else {
        const std::string hostPath = hostPathKey(url, parts.scheme.size());
        if (parts.path.empty()) {
            url += '/';
        }
        // A plain prefix test: for the site "http://shop/" the host "shopfront" is inside.
        if (!hostPath.starts_with(baseHostPath_)) {
            link.decision =
                recorded(std::move(url), isWebScheme(parts.scheme) ? LinkReason::OffSiteHost
                                                                   : LinkReason::OtherScheme);
        } else {
            link.decision.url = std::move(url);
            return inSiteCandidate(std::move(link));
        }
    }
    return link;
}

PreparedLink LinkJudge::inSiteCandidate(PreparedLink link) const {
    std::string& url = link.decision.url;
    if (url.find('?') != std::string::npos && !queryMayBeQueued(url, allowedMedia_)) {
        const bool manyMarks = std::count(url.begin(), url.end(), '?') >= 2;
        link.decision = recorded(std::move(url), manyMarks ? LinkReason::TooManyQueryMarks
                                                           : LinkReason::QueryWithoutPage);
        return link;
    }
    const auto indexPage =
        std::find_if(allowedMedia_.begin(), allowedMedia_.end(), [&](const std::string& ext) {
            return url.ends_with(ext) &&
                   std::string_view(url).substr(0, url.size() - ext.size()).ends_with("index");
        });
    link.indexForm =
        indexPage == allowedMedia_.end() ? url : replaceAll(url, "index" + *indexPage, "");
    link.hostTwin = containsIgnoringCase(url, "://www.") ? replaceAll(url, "://www.", "://")
                                                         : replaceAll(url, "://", "://www.");
    link.decision.outcome = LinkOutcome::Queued;
    link.decision.reason = LinkReason::Queued;
    return link;
}

}  // namespace loomcrest
