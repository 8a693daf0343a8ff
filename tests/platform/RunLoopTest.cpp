#include "platform/RunLoop.h"

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/NotificationCenter.h"

namespace loomcrest {
namespace {

using namespace std::chrono_literals;

// The waiter returns as soon as its work is done, so nothing the loop thread still touches
// after the work may live on the waiter's stack; ThreadSanitizer finds any that does.
TEST(RunLoop, WorkFromAnotherThreadRunsOnTheLoopThreadInOrder) {
    RunLoop loop;
    std::vector<int> order;
    std::thread::id ranOn;
    constexpr int kWaits = 2000;
    int ran = 0;
    int seenByWorker = 0;
    std::thread worker([&] {
        loop.perform([&] { order.push_back(1); });
        loop.performAndWait([&] {
            order.push_back(2);
            ranOn = std::this_thread::get_id();
        });
        order.push_back(3);  // only after the loop ran the waited-for work
        for (int i = 0; i < kWaits; ++i) {
            loop.performAndWait([&] { ++ran; });
            seenByWorker = ran;
        }
        loop.perform([&] {
            loop.performAndWait([&] { order.push_back(4); });  // on the loop thread: at once
            loop.stop();
        });
    });
    loop.run();
    worker.join();
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3, 4}));
    EXPECT_EQ(ranOn, std::this_thread::get_id());
    EXPECT_EQ(seenByWorker, kWaits) << "each wait saw its work done";
}

TEST(RunLoop, TimersFireInDeadlineOrderPendingOnesAreDroppedAtStopAndIdleWorkRuns) {
    RunLoop loop;
    std::vector<std::string> fired;
    loop.performAfter(30ms, [&] { fired.push_back("late"); });
    loop.performAfter(10ms, [&] { fired.push_back("early"); });
    loop.performAfter(60ms, [&] { loop.stop(); });
    loop.performAfter(10s, [&] { fired.push_back("never"); });
    loop.run();
    EXPECT_EQ(fired, (std::vector<std::string>{"early", "late"}));

    RunLoop waiting;
    int idleCalls = 0;
    waiting.run(
        [&] {
            if (++idleCalls == 3) {
                waiting.stop();
            }
        },
        5ms);
    EXPECT_EQ(idleCalls, 3);
}

// An observer may also unregister itself while being notified.
TEST(NotificationCenter, DeliversByNameWhileObserved) {
    NotificationCenter center;
    std::vector<std::string> received;
    ScopedObserver other(center, "other", [&] { received.push_back("other"); });
    {
        ScopedObserver first(center, "vrlmpLFF", [&] { received.push_back("first"); });
        center.post("vrlmpLFF");
    }
    center.post("vrlmpLFF");
    std::optional<NotificationCenter::Token> token;
    token = center.addObserver("once", [&] {
        received.push_back("once");
        center.removeObserver(*token);
    });
    center.post("once");
    center.post("once");
    EXPECT_EQ(received, (std::vector<std::string>{"first", "once"}));
}

}  // namespace
}  // namespace loomcrest
