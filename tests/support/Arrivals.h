#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <vector>

namespace loomcrest::test {

// When requests reached a test server, noted from its handler threads.
class Arrivals {
public:
    using Clock = std::chrono::steady_clock;

    void note() {
        {
            const std::lock_guard lock(mutex_);
            times_.push_back(Clock::now());
        }
        arrived_.notify_all();
    }

    size_t count() const {
        const std::lock_guard lock(mutex_);
        return times_.size();
    }

    // Waits until `count` requests have arrived; false when that took longer than `limit`.
    bool waitFor(size_t count, std::chrono::seconds limit = std::chrono::seconds(30)) const {
        std::unique_lock lock(mutex_);
        return arrived_.wait_for(lock, limit, [&] { return times_.size() >= count; });
    }

    std::vector<Clock::time_point> times() const {
        const std::lock_guard lock(mutex_);
        auto sorted = times_;
        std::sort(sorted.begin(), sorted.end());
        return sorted;
    }

    // The most arrivals that fall in any window of that length.
    size_t mostWithin(Clock::duration window) const {
        const auto sorted = times();
        size_t most = 0;
        size_t first = 0;
        for (size_t last = 0; last < sorted.size(); ++last) {
            while (sorted[last] - sorted[first] >= window) {
                ++first;
            }
            most = std::max(most, last - first + 1);
        }
        return most;
    }

private:
    mutable std::mutex mutex_;
    mutable std::condition_variable arrived_;
    std::vector<Clock::time_point> times_;
};

}  // namespace loomcrest::test
