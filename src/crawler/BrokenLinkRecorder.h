#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "sitemap/BrokenLinkDetails.h"

namespace loomcrest {

// Gathers the details of "brokenLinks.tsv" while a scan runs: for every page of the page
// list the first page that linked to it, with that link's text, and how many links pointed
// to it; for every broken page why it failed. Called by the crawl where it deals with the
// pages in list order, so the first referrer is the first in that order.
//
// Pages are known by views of the page list's own entries, which never move and outlive the
// scan, so a big site's URLs are not held twice.
class BrokenLinkRecorder {
public:
    void reset();
    // The start page, `entry` of the page list: there from the beginning, linked from nowhere.
    void startPage(std::string_view entry);
    // A link of `page` that put `entry` on the page list.
    void pageQueued(std::string_view entry, std::string_view page, std::string linkText);
    // Any other link of a page that leads to `url`; counted when `url` is on the list.
    void linkTo(std::string_view url);
    void pageBroken(std::string_view url, std::string status);

    // The broken pages, in the order found.
    std::vector<BrokenLinkDetail> details() const;

private:
    struct Hash {
        using is_transparent = void;
        size_t operator()(std::string_view text) const {
            return std::hash<std::string_view>{}(text);
        }
    };
    struct Referral {
        // Empty for the start page.
        std::string_view firstPage;
        std::string linkText;
        uint32_t links = 0;
    };
    struct Broken {
        std::string url;
        std::string status;
    };

    std::unordered_map<std::string_view, Referral, Hash> pages_;
    std::vector<Broken> broken_;
};

}  // namespace loomcrest
