#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "crawler/PageList.h"
#include "sitemap/BrokenLinkDetails.h"

namespace loomcrest {

// Gathers the details of "brokenLinks.tsv" while a scan runs: for every page of the page
// list the first page that linked to it, with that link's text, and how many links pointed
// to it; for every broken page why it failed. Called by the crawl where it deals with the
// pages in list order, so the first referrer is the first in that order.
//
// Pages are known by their places in the page list, and the link texts stand one after
// another in one store, so that a big site costs a few bytes a page beyond its texts.
class BrokenLinkRecorder {
public:
    void reset();
    // The start page, at place 0 of the page list: linked from nowhere.
    void startPage();
    // A link of the page at place `page` that put the page at place `entry` on the list.
    void pageQueued(size_t entry, size_t page, std::string_view linkText);
    // Any other link of a page that leads to the page at `place`, or to no listed page.
    void linkTo(size_t place);
    void pageBroken(size_t place, std::string status);

    // The broken pages, in the order found, with the URLs of `pages`.
    std::vector<BrokenLinkDetail> details(const PageList& pages) const;

private:
    static constexpr uint32_t kNoPage = UINT32_MAX;
    struct Referral {
        uint32_t firstPage = kNoPage;
        uint32_t links = 0;
        // Where its link text starts in texts_; it ends where the next page's starts.
        size_t textStart = 0;
    };
    struct Broken {
        size_t place;
        std::string status;
    };

    // By place in the page list.
    std::deque<Referral> pages_;
    std::deque<char> texts_;
    std::vector<Broken> broken_;
};

}  // namespace loomcrest
