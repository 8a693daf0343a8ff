#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <thread>

#include "platform/UiThread.h"

namespace loomcrest {

// A user-interface thread without a window: whoever calls run() becomes that thread and
// carries out the queued work until stop().
class RunLoop : public UiThread {
public:
    void perform(Work work) override;
    void performAndWait(Work work) override;
    void performAfter(std::chrono::milliseconds delay, Work work) override;

    // Runs queued and timed work until stop(). `idle`, when given, runs on this thread
    // about every `tick`, busy or not.
    void run(const Work& idle = {},
             std::chrono::milliseconds tick = std::chrono::milliseconds(100));
    // Ends run() once the work already queued has been carried out; timers still pending
    // are dropped.
    void stop();

private:
    using Clock = std::chrono::steady_clock;

    bool onLoopThread();
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<Work> queue_;
    std::multimap<Clock::time_point, Work> timers_;
    std::thread::id loopThread_;
    bool stopping_ = false;
};

}  // namespace loomcrest
