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
    changed_.notify_all();
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
    changed_.notify_one();
}

void FetchAhead::handOverFetched(FetchedPage page) {
    {
        const std::lock_guard lock(mutex_);
        fetched_.emplace(handedOver_, std::move(page));
    }
    ++handedOver_;
}

FetchedPage FetchAhead::take(size_t place) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return fetched_.contains(place); });
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
    changed_.notify_all();
    changed_.wait(lock, [this] { return !held_; });
}

void FetchAhead::work() {
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] {
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
            changed_.notify_all();
            continue;
        }
        auto [place, url] = std::move(waiting_.front());
        waiting_.pop_front();
        lock.unlock();
        FetchedPage page = fetch_(url);
        lock.lock();
        held_ = held_ || page.holdsFetching;
        fetched_.emplace(place, std::move(page));
        changed_.notify_all();
    }
}

}  // namespace loomcrest
