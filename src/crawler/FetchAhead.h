#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "crawler/PageFetch.h"

namespace loomcrest {

// Fetches pages further down the page list on a pool of threads, one connection each,
// while the crawl deals with the pages one after another in list order. The crawl hands
// over each page by its place in the list before it takes it; the pool works on the
// lowest places first and holds no more than `window` pages handed over and not yet
// taken, so memory stays flat however long the list grows. A pool of one thread makes its
// requests in list order, page after page, as a crawl that fetched each page itself would.
//
// A fetch may hold the pool (FetchedPage::holdsFetching): nothing more is fetched until the
// crawl has taken that page and resumes the pool. Meant for a pool of one thread, whose
// order it keeps; other threads would finish what they had begun.
class FetchAhead {
public:
    using Fetch = std::function<FetchedPage(const std::string& url)>;

    FetchAhead(int threads, size_t window, Fetch fetch);
    FetchAhead(const FetchAhead&) = delete;
    FetchAhead& operator=(const FetchAhead&) = delete;
    // Stops and waits for the threads; what they fetched and was not taken is dropped.
    ~FetchAhead();

    // The place up to which pages have been handed over (one past the last).
    size_t handedOver() const { return handedOver_; }
    // Whether another page may be handed over without passing the window.
    bool hasRoom(size_t nextToTake) const { return handedOver_ < nextToTake + window_; }
    // Hands over the page at place handedOver().
    void handOver(std::string url);
    // The same for a page already fetched.
    void handOverFetched(FetchedPage page);
    // Waits for the page at `place`, which must have been handed over and not taken yet.
    FetchedPage take(size_t place);
    // After taking a page that held the pool: runs `rest` on the pool's thread, so on the
    // connection that fetched the page, waits for it, and lets the pool fetch again.
    void resume(const std::function<void()>& rest = {});
    // A page dealt with. A fetching thread frees it, as it made it: memory freed by another
    // thread goes back to the heap of the one that took it only at a cost, a large one
    // when that happens for every piece of every page.
    void giveBack(FetchedPage page);

private:
    void work();

    const size_t window_;
    const Fetch fetch_;
    size_t handedOver_ = 0;  // the crawl's thread only

    // Whether the crawl, waiting for the page at `place`, should be woken now.
    bool crawlMayGoOn(size_t place) const;

    std::mutex mutex_;
    // The fetching threads wait on one, the crawl on the other: a page fetched wakes no
    // other fetching thread, a page handed over does not wake the crawl.
    std::condition_variable workChanged_;
    std::condition_variable pagesChanged_;
    // The place the crawl waits for, if it does.
    std::optional<size_t> awaited_;
    std::deque<std::pair<size_t, std::string>> waiting_;
    std::map<size_t, FetchedPage> fetched_;
    std::vector<FetchedPage> spent_;
    bool stopping_ = false;
    bool held_ = false;
    // Pages being fetched.
    size_t busy_ = 0;
    // Handed over by resume: what the held thread runs before it fetches again.
    const std::function<void()>* resumeWith_ = nullptr;
    std::vector<std::thread> threads_;
};

}  // namespace loomcrest
