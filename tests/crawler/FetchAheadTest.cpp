#include "crawler/FetchAhead.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace loomcrest {
namespace {

using namespace std::chrono_literals;

// A fetch that takes its time and notes how many run at once.
struct SlowFetch {
    FetchedPage operator()(const std::string& url) {
        const int running = ++inFlight;
        int seen = mostInFlight.load();
        while (running > seen && !mostInFlight.compare_exchange_weak(seen, running)) {
        }
        std::this_thread::sleep_for(std::chrono::microseconds(200 * (url.size() % 7)));
        --inFlight;
        FetchedPage page;
        page.title.title = "title of " + url;
        return page;
    }
    std::atomic<int> inFlight{0};
    std::atomic<int> mostInFlight{0};
};

TEST(FetchAhead, PagesComeBackInListOrderWithinTheWindow) {
    SlowFetch slow;
    std::atomic<size_t> mostAhead{0};
    size_t taken = 0;
    {
        FetchAhead ahead(4, 8, [&](const std::string& url) { return slow(url); });
        for (size_t place = 0; place < 200; ++place) {
            while (ahead.hasRoom(place) && ahead.handedOver() < 200) {
                ahead.handOver("/page" + std::to_string(ahead.handedOver()));
            }
            mostAhead = std::max(mostAhead.load(), ahead.handedOver() - place);
            EXPECT_EQ(ahead.take(place).title.title, "title of /page" + std::to_string(place));
            ++taken;
        }
    }
    EXPECT_EQ(taken, 200U);
    EXPECT_EQ(mostAhead.load(), 8U);
    EXPECT_LE(slow.mostInFlight.load(), 4);
    EXPECT_GE(slow.mostInFlight.load(), 2) << "fetches overlap";
}

TEST(FetchAhead, StoppingDropsWhatWasNotTaken) {
    std::mutex mutex;
    std::condition_variable started;
    int fetches = 0;
    {
        FetchAhead ahead(2, 16, [&](const std::string&) {
            {
                const std::lock_guard lock(mutex);
                ++fetches;
            }
            started.notify_all();
            std::this_thread::sleep_for(5ms);
            return FetchedPage{};
        });
        for (int i = 0; i < 16; ++i) {
            ahead.handOver("/p");
        }
        std::unique_lock lock(mutex);
        started.wait(lock, [&] { return fetches >= 2; });
    }
    // The two under way finish; the fourteen waiting are never fetched.
    EXPECT_LT(fetches, 16);
}

}  // namespace
}  // namespace loomcrest
