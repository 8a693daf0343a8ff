#include <algorithm>

#include "crawler/LinkJudge.h"
#include "crawler/SiteScanner.h"

namespace loomcrest {

LinkDecision SiteScanner::acceptLink(std::string_view href) {
    PreparedLink link = LinkJudge(*this).prepare(pageBaseURLUnchanged, href);
    return decideLink(link);
}

LinkDecision SiteScanner::decideLink(PreparedLink& link) {
    if (!link.folderTestUrl.empty() &&
        std::any_of(allowedMediaArray.begin(), allowedMediaArray.end(),
                    [&](const std::string& ext) {
                        return inPageList(link.folderTestUrl + "index" + ext);
                    })) {
        return LinkDecision{LinkOutcome::Dropped, {}, LinkReason::FolderOfIndexPage, {}};
    }
    LinkDecision& decision = link.decision;
    if (decision.outcome != LinkOutcome::Queued) {
        return std::move(decision);
    }
    const auto recorded = [&](LinkReason reason) {
        return LinkDecision{LinkOutcome::Recorded, std::move(decision.url), reason, {}};
    };
    if (inPageList(decision.url)) {
        return recorded(LinkReason::Duplicate);
    }
    if (inPageList(link.indexForm)) {
        return recorded(LinkReason::IndexPageOfFolder);
    }
    if (inPageList(link.hostTwin)) {
        return recorded(LinkReason::WwwTwin);
    }
    uniquePagesLeftMArray.append(decision.url);
    return std::move(decision);
}

}  // namespace loomcrest
