#include "crawler/BrokenLinkRecorder.h"

namespace loomcrest {

void BrokenLinkRecorder::reset() {
    pages_.clear();
    broken_.clear();
}

void BrokenLinkRecorder::startPage(std::string_view entry) {
    pages_.try_emplace(entry);
}

void BrokenLinkRecorder::pageQueued(std::string_view entry, std::string_view page,
                                    std::string linkText) {
    // The referrer's own key, not `page`, which may be a passing copy.
    const auto referrer = pages_.find(page);
    const std::string_view firstPage =
        referrer == pages_.end() ? std::string_view() : referrer->first;
    pages_.try_emplace(entry, Referral{firstPage, std::move(linkText), 1});
}

void BrokenLinkRecorder::linkTo(std::string_view url) {
    if (const auto page = pages_.find(url); page != pages_.end()) {
        ++page->second.links;
    }
}

void BrokenLinkRecorder::pageBroken(std::string_view url, std::string status) {
    broken_.push_back({std::string(url), std::move(status)});
}

std::vector<BrokenLinkDetail> BrokenLinkRecorder::details() const {
    std::vector<BrokenLinkDetail> details;
    details.reserve(broken_.size());
    for (const Broken& broken : broken_) {
        BrokenLinkDetail detail{broken.url, broken.status, {}, {}, 0};
        if (const auto page = pages_.find(broken.url); page != pages_.end()) {
            const Referral& referral = page->second;
            detail.foundOn = referral.firstPage;
            detail.linkText = referral.linkText;
            detail.links = referral.links;
        }
        details.push_back(std::move(detail));
    }
    return details;
}

}  // namespace loomcrest
