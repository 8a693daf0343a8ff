#include "crawler/FetchAhead.h"

namespace loomcrest {

FetchAhead::FetchAhead(int threads, size_t window, Fetch fetch)
    : window_(window), fetch_(std::move(fetch)) {
    threads_.reserve(static_cast<size_t>(threads));
    for (int i = 0; i < threads; ++i) {
        threads_.emplace_back([this] { work(); });
    }
}

FetchAhead::~FetchAhead() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        waiting_.clear();
    }
    workChanged_.notify_all();
    for (std::thread& thread : threads_) {
        thread.join();
    }
}

void FetchAhead::handOver(std::string url) {
    {
        const std::lock_guard lock(mutex_);
        waiting_.emplace_back(handedOver_, std::move(url));
    }
    ++handedOver_;
    workChanged_.notify_one();
}

void FetchAhead::handOverFetched(FetchedPage page) {
    {
        const std::lock_guard lock(mutex_);
        fetched_.emplace(handedOver_, std::move(page));
    }
    ++handedOver_;
}

// Each wake-up of a thread that sleeps costs more than a little work. A single fetching
// thread, which sets the pace, wakes the crawl only once it has fetched every page handed
// over: the crawl then deals with them in a row and hands over the next ones as it goes, so
// both sleep once in a few pages rather than at every page.
bool FetchAhead::crawlMayGoOn(size_t place) const {
    return fetched_.contains(place) &&
           (threads_.size() > 1 || held_ || (waiting_.empty() && busy_ == 0));
}

FetchedPage FetchAhead::take(size_t place) {
    std::unique_lock lock(mutex_);
    awaited_ = place;
    pagesChanged_.wait(lock, [&] { return crawlMayGoOn(place); });
    awaited_.reset();
    FetchedPage page = std::move(fetched_.at(place));
    fetched_.erase(place);
    return page;
}

void FetchAhead::resume(const std::function<void()>& rest) {
    std::unique_lock lock(mutex_);
    if (!held_) {  // nothing to resume: the rest is run here
        lock.unlock();
        if (rest) {
            rest();
        }
        return;
    }
    resumeWith_ = &rest;
    workChanged_.notify_all();
    pagesChanged_.wait(lock, [this] { return !held_; });
}

void FetchAhead::giveBack(FetchedPage page) {
    const std::lock_guard lock(mutex_);
    spent_.push_back(std::move(page));
}

void FetchAhead::work() {
    std::unique_lock lock(mutex_);
    while (true) {
        workChanged_.wait(lock, [this] {
            return stopping_ || (held_ ? resumeWith_ != nullptr : !waiting_.empty());
        });
        if (stopping_) {
            return;
        }
        if (held_) {
            const std::function<void()>& rest = *resumeWith_;
            lock.unlock();
            if (rest) {
                rest();
            }
            lock.lock();
            resumeWith_ = nullptr;
            held_ = false;
            pagesChanged_.notify_one();
            continue;
        }
        auto [place, url] = std::move(waiting_.front());
        waiting_.pop_front();
        ++busy_;
        std::vector<FetchedPage> spent = std::move(spent_);
        spent_.clear();
        lock.unlock();
        spent.clear();
        FetchedPage page = fetch_(url);
        lock.lock();
        --busy_;
        held_ = held_ || page.holdsFetching;
        fetched_.emplace(place, std::move(page));
        if (awaited_ && crawlMayGoOn(*awaited_)) {
            pagesChanged_.notify_one();
        }
    }
}

}  // namespace loomcrest
