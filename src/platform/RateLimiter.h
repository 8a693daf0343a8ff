#pragma once

#include <chrono>
#include <mutex>

#include "platform/Cancellation.h"

namespace loomcrest {

// Spaces requests evenly at no more than a given rate, across every thread that shares
// it: a token bucket that holds one token, so no burst ever exceeds the rate.
class RateLimiter {
public:
    // Zero or less: no limit.
    explicit RateLimiter(double requestsPerSecond);
    RateLimiter(const RateLimiter&) = delete;
    RateLimiter& operator=(const RateLimiter&) = delete;

    // Waits for the next free turn and takes it; false when cancelled before or during the
    // wait (the turn is then given up as well). Without a limit there is never a wait, and
    // the answer is always true.
    bool acquire(const Cancellation* cancellation);

private:
    using Clock = std::chrono::steady_clock;

    Clock::duration interval_{};
    std::mutex mutex_;
    Clock::time_point nextTurn_{};
};

}  // namespace loomcrest
