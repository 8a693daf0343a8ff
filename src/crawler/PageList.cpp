#include "crawler/PageList.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace loomcrest {

namespace {

constexpr size_t kBlockBytes = 256 * 1024;
constexpr size_t kFirstIndexSize = 1024;

size_t hashOf(std::string_view url) {
    return std::hash<std::string_view>{}(url);
}

uint32_t hashPart(size_t hash) {
    return static_cast<uint32_t>(hash >> 32U) | 1U;
}

}  // namespace

std::string_view PageList::store(std::string_view url) {
    if (url.size() > blockRoom_) {
        const size_t size = std::max(kBlockBytes, url.size());
        blocks_.push_back(std::make_unique<char[]>(size));
        blockEnd_ = blocks_.back().get();
        blockRoom_ = size;
    }
    char* const start = blockEnd_;
    if (!url.empty()) {
        std::memcpy(start, url.data(), url.size());
    }
    blockEnd_ += url.size();
    blockRoom_ -= url.size();
    return {start, url.size()};
}

size_t PageList::slotFor(std::string_view url, size_t hash) const {
    const size_t mask = index_.size() - 1;
    const uint32_t part = hashPart(hash);
    for (size_t slot = hash & mask;; slot = (slot + 1) & mask) {
        const Slot& entry = index_[slot];
        if (entry.placeAfter == 0 ||
            (entry.hashPart == part && entries_[entry.placeAfter - 1] == url)) {
            return slot;
        }
    }
}

void PageList::growIndex() {
    std::vector<Slot> old = std::move(index_);
    index_.assign(std::max(kFirstIndexSize, old.size() * 2), Slot{});
    const size_t mask = index_.size() - 1;
    for (const Slot& entry : old) {
        if (entry.placeAfter == 0) {
            continue;
        }
        size_t slot = hashOf(entries_[entry.placeAfter - 1]) & mask;
        while (index_[slot].placeAfter != 0) {
            slot = (slot + 1) & mask;
        }
        index_[slot] = entry;
    }
}

void PageList::append(std::string_view url) {
    if ((indexed_ + 1) * 2 > index_.size()) {
        growIndex();
    }
    const size_t hash = hashOf(url);
    const size_t slot = slotFor(url, hash);
    entries_.push_back(store(url));
    // A URL listed again keeps the place of its first entry.
    if (index_[slot].placeAfter == 0) {
        index_[slot] = Slot{hashPart(hash), static_cast<uint32_t>(entries_.size())};
        ++indexed_;
    }
}

size_t PageList::placeOf(std::string_view url) const {
    if (index_.empty()) {
        return kNowhere;
    }
    const Slot& entry = index_[slotFor(url, hashOf(url))];
    return entry.placeAfter == 0 ? kNowhere : entry.placeAfter - 1;
}

void PageList::clear() {
    blocks_.clear();
    blockRoom_ = 0;
    blockEnd_ = nullptr;
    entries_.clear();
    index_.clear();
    indexed_ = 0;
}

}  // namespace loomcrest
