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
                        // One buffer for every such test: links to folders are common.
                        indexPageProbe_.assign(link.folderTestUrl).append("index").append(ext);
                        return inPageList(indexPageProbe_);
                    })) {
        return LinkDecision{LinkOutcome::Dropped, {}, LinkReason::FolderOfIndexPage, {}};
    }
    LinkDecision& decision = link.decision;
    if (decision.outcome != LinkOutcome::Queued) {
        if (decision.outcome == LinkOutcome::Recorded) {
            decision.listedAt = uniquePagesLeftMArray.placeOf(decision.url);
        }
        return std::move(decision);
    }
    const auto recorded = [&](LinkReason reason, size_t listedAt) {
        return LinkDecision{LinkOutcome::Recorded, std::move(decision.url), reason, {}, listedAt};
    };
    if (const size_t listed = uniquePagesLeftMArray.placeOf(decision.url);
        listed != PageList::kNowhere) {
        return recorded(LinkReason::Duplicate, listed);
    }
    // Neither of these adds the link's own URL, which stays off the list.
    if (inPageList(link.indexForm)) {
        return recorded(LinkReason::IndexPageOfFolder, PageList::kNowhere);
    }
    if (inPageList(link.hostTwin)) {
        return recorded(LinkReason::WwwTwin, PageList::kNowhere);
    }
    uniquePagesLeftMArray.append(decision.url);
    decision.listedAt = uniquePagesLeftMArray.size() - 1;
    return std::move(decision);
}

}  // namespace loomcrest
