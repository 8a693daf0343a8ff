#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "crawler/SiteScanner.h"
#include "platform/Url.h"

namespace loomcrest {

// What a link's own text says of it before the page list is asked: the part of the crawl's
// judgement that does not depend on the order in which pages are dealt with, so that it
// can be worked out on the thread that fetched the page.
struct PreparedLink {
    std::string href;
    // Dropped or Recorded: final once the folder test below has passed. Queued: a
    // candidate whose URL the page list must not hold yet in any of its three forms.
    LinkDecision decision;
    // Not empty when the link is dropped if this URL followed by "index" and a page
    // extension is on the page list; that test comes before every other.
    std::string folderTestUrl;
    // A candidate's folder form (without "index.ext") and its twin with or without "www.".
    std::string indexForm;
    std::string hostTwin;
    // The anchor's text; only for links that are not dropped beforehand.
    std::string linkText;
    // An earlier anchor of the same page has the same URL and was not dropped beforehand.
    bool repeatInPage = false;
};

// Judges links by the scanner's site base, page extensions, filters and robots rules, which
// must stay as they are while it is used; it may be used from several threads at once.
class LinkJudge {
public:
    explicit LinkJudge(const SiteScanner& scanner);

    // The link `href` of the page `pageUrl`, as far as it can be judged alone.
    PreparedLink prepare(std::string_view pageUrl, std::string_view href) const;
    // The same, for a page whose links are all judged against one resolver.
    PreparedLink prepare(const UrlResolver& page, std::string_view href) const;

private:
    PreparedLink inSiteCandidate(PreparedLink link) const;

    const std::vector<std::string>& allowedMedia_;
    const std::vector<std::string>& filters_;
    const std::vector<std::string>& robots_;
    const bool ignoreRobots_;
    const std::string siteBaseUrl_;
    size_t baseSchemeLength_ = 0;
    std::string baseHostPath_;
};

}  // namespace loomcrest
