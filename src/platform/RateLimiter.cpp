#include "platform/RateLimiter.h"

#include <algorithm>
#include <thread>

namespace loomcrest {

RateLimiter::RateLimiter(double requestsPerSecond) {
    if (requestsPerSecond > 0) {
        interval_ = std::chrono::duration_cast<Clock::duration>(
            std::chrono::duration<double>(1.0 / requestsPerSecond));
    }
}

bool RateLimiter::acquire(const Cancellation* cancellation) {
    if (interval_ == Clock::duration::zero()) {
        return true;
    }
    if (cancellation != nullptr && cancellation->isCancelled()) {
        return false;
    }
    Clock::time_point turn;
    {
        const std::lock_guard lock(mutex_);
        turn = std::max(Clock::now(), nextTurn_);
        nextTurn_ = turn + interval_;
    }
    const auto wait = turn - Clock::now();
    if (wait <= Clock::duration::zero()) {
        return true;
    }
    if (cancellation == nullptr) {
        std::this_thread::sleep_for(wait);
        return true;
    }
    return cancellation->sleepFor(wait);
}

}  // namespace loomcrest
