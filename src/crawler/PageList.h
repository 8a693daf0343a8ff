#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>

namespace loomcrest {

// An ordered list of URLs that also answers "is this URL in the list" in constant time:
// the crawl asks that for every link it meets, and big sites have millions of them.
class PageList {
public:
    void append(std::string url);
    bool contains(std::string_view url) const { return index_.contains(url); }
    // The place of the URL's first entry, or kNowhere.
    static constexpr size_t kNowhere = static_cast<size_t>(-1);
    size_t placeOf(std::string_view url) const {
        const auto found = index_.find(url);
        return found == index_.end() ? kNowhere : found->second;
    }
    void clear();

    size_t size() const { return urls_.size(); }
    bool empty() const { return urls_.empty(); }
    const std::string& operator[](size_t position) const { return urls_[position]; }
    auto begin() const { return urls_.begin(); }
    auto end() const { return urls_.end(); }

private:
    struct Hash {
        using is_transparent = void;
        size_t operator()(std::string_view text) const {
            return std::hash<std::string_view>{}(text);
        }
    };
    // A deque never moves its elements, so the views in the index stay valid.
    std::deque<std::string> urls_;
    // Each URL with the place of its first entry.
    std::unordered_map<std::string_view, size_t, Hash, std::equal_to<>> index_;
};

}  // namespace loomcrest
