#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace loomcrest {

// A stop request that any thread may give and that wakes every wait made through it at
// once, so that a wait of a minute ends as soon as the user cancels.
class Cancellation {
public:
    void cancel() {
        {
            const std::lock_guard lock(mutex_);
            cancelled_ = true;
        }
        woken_.notify_all();
    }
    void reset() { cancelled_ = false; }
    bool isCancelled() const { return cancelled_; }

    // Sleeps for `duration`; false when cancelled before or while sleeping.
    bool sleepFor(std::chrono::steady_clock::duration duration) const {
        std::unique_lock lock(mutex_);
        return !woken_.wait_for(lock, duration, [this] { return cancelled_.load(); });
    }

private:
    std::atomic<bool> cancelled_{false};
    mutable std::mutex mutex_;
    mutable std::condition_variable woken_;
};

}  // namespace loomcrest
