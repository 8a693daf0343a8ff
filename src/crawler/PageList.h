#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace loomcrest {

// An ordered list of URLs that also answers "is this URL in the list" in constant time:
// the crawl asks that for every link it meets, and big sites have millions of them.
//
// The URLs stand one after another in large blocks and the index is one flat table, so a
// URL costs no allocation of its own: a long scan's heap is not strewn with small pieces
// that every later allocation has to work around, and a look-up touches few cache lines.
class PageList {
public:
    void append(std::string_view url);
    bool contains(std::string_view url) const { return placeOf(url) != kNowhere; }
    // The place of the URL's first entry, or kNowhere.
    static constexpr size_t kNowhere = static_cast<size_t>(-1);
    size_t placeOf(std::string_view url) const;
    void clear();

    size_t size() const { return entries_.size(); }
    bool empty() const { return entries_.empty(); }
    // Stays valid until the list is cleared.
    std::string_view operator[](size_t position) const { return entries_[position]; }

private:
    // A place in the list, kept with part of its URL's hash so that most slots that do not
    // match are passed over without reading the URL.
    struct Slot {
        uint32_t hashPart = 0;
        uint32_t placeAfter = 0;  // the place plus one; 0 for an empty slot
    };

    std::string_view store(std::string_view url);
    void growIndex();
    // The slot holding the URL, or the empty slot where it would go.
    size_t slotFor(std::string_view url, size_t hash) const;

    std::vector<std::unique_ptr<char[]>> blocks_;
    size_t blockRoom_ = 0;
    char* blockEnd_ = nullptr;
    std::vector<std::string_view> entries_;
    // Open addressing with linear probing; at most half full, its size a power of two.
    std::vector<Slot> index_;
    size_t indexed_ = 0;
};

}  // namespace loomcrest
