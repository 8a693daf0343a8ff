#pragma once

#include <chrono>
#include <functional>

namespace loomcrest {

// The user-interface thread as the core sees it. Each front end provides one: the window
// posts to its event loop, the command line and the tests run a RunLoop.
class UiThread {
public:
    using Work = std::function<void()>;

    virtual ~UiThread() = default;
    // Queues `work` and returns at once.
    virtual void perform(Work work) = 0;
    // Runs `work` on the user-interface thread and returns once it has run; runs it
    // directly when called on that thread.
    virtual void performAndWait(Work work) = 0;
    // A one-shot timer: runs `work` on the user-interface thread after `delay`.
    virtual void performAfter(std::chrono::milliseconds delay, Work work) = 0;
};

}  // namespace loomcrest
