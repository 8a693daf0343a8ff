#include "crawler/BrokenLinkRecorder.h"

namespace loomcrest {

void BrokenLinkRecorder::reset() {
    pages_.clear();
    texts_.clear();
    broken_.clear();
}

void BrokenLinkRecorder::startPage() {
    pages_.clear();
    pages_.emplace_back();
}

void BrokenLinkRecorder::pageQueued(size_t entry, size_t page, std::string_view linkText) {
    // A page is queued once, right after those before it; any other call changes nothing.
    if (entry != pages_.size()) {
        return;
    }
    const size_t textStart = texts_.size();
    texts_.insert(texts_.end(), linkText.begin(), linkText.end());
    const uint32_t firstPage = page < pages_.size() ? static_cast<uint32_t>(page) : kNoPage;
    pages_.push_back(Referral{firstPage, 1, textStart});
}

void BrokenLinkRecorder::linkTo(size_t place) {
    if (place < pages_.size()) {
        ++pages_[place].links;
    }
}

void BrokenLinkRecorder::pageBroken(size_t place, std::string status) {
    broken_.push_back({place, std::move(status)});
}

std::vector<BrokenLinkDetail> BrokenLinkRecorder::details(const PageList& pages) const {
    std::vector<BrokenLinkDetail> details;
    details.reserve(broken_.size());
    for (const Broken& broken : broken_) {
        BrokenLinkDetail detail{std::string(pages[broken.place]), broken.status, {}, {}, 0};
        if (broken.place < pages_.size()) {
            const Referral& referral = pages_[broken.place];
            if (referral.firstPage != kNoPage) {
                detail.foundOn = pages[referral.firstPage];
            }
            const size_t textEnd = broken.place + 1 < pages_.size()
                                       ? pages_[broken.place + 1].textStart
                                       : texts_.size();
            const auto at = [&](size_t offset) {
                return texts_.begin() + static_cast<std::ptrdiff_t>(offset);
            };
            detail.linkText.assign(at(referral.textStart), at(textEnd));
            detail.links = referral.links;
        }
        details.push_back(std::move(detail));
    }
    return details;
}

}  // namespace loomcrest
