#pragma once

#include "platform/UiThread.h"

namespace loomcrest {

// For front ends without an event loop of their own: the command line and the tests. Work
// runs at once on the calling thread, timers included.
class ImmediateUiThread : public UiThread {
public:
    void perform(Work work) override { work(); }
    void performAndWait(Work work) override { work(); }
    void performAfter(std::chrono::milliseconds /*delay*/, Work work) override { work(); }
};

}  // namespace loomcrest
