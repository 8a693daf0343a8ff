#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <mutex>
#include <thread>

#include "platform/Http.h"
#include "support/Arrivals.h"
#include "support/TestServer.h"

namespace loomcrest {
namespace {

using namespace std::chrono_literals;
using test::Arrivals;

class HttpSession : public testing::Test {
protected:
    void SetUp() override {
        auto& routes = server.server();
        routes.Get("/count", [this](const httplib::Request&, httplib::Response& res) {
            arrivals.note();
            res.set_content("ok", "text/plain");
        });
        // Busy the first time it is asked, with the Retry-After the query names.
        routes.Get("/busy", [this](const httplib::Request& req, httplib::Response& res) {
            arrivals.note();
            if (arrivals.count() == 1 || req.get_param_value("always") == "1") {
                res.status =
                    req.has_param("status") ? std::stoi(req.get_param_value("status")) : 503;
                if (req.has_param("after")) {
                    res.set_header("Retry-After", req.get_param_value("after"));
                }
                return;
            }
            res.set_content("ok", "text/plain");
        });
        routes.Get("/hang", [this](const httplib::Request&, httplib::Response& res) {
            arrivals.note();
            std::unique_lock lock(mutex);
            released.wait_for(lock, 10s, [this] { return release; });
            res.set_content("late", "text/plain");
        });
        server.start();
    }

    void TearDown() override {
        {
            const std::lock_guard lock(mutex);
            release = true;
        }
        released.notify_all();
    }

    http::Response get(const std::string& target, const http::Session* session) {
        http::Request request;
        request.url = server.url(target);
        request.session = session;
        return http::send(request);
    }

    test::TestServer server;
    Arrivals arrivals;
    std::mutex mutex;
    std::condition_variable released;
    bool release = false;
};

TEST_F(HttpSession, RetryAfterIsHonouredOnce) {
    http::Session session;
    const http::Response retried = get("/busy?after=1", &session);
    EXPECT_EQ(retried.statusCode, 200);
    EXPECT_EQ(retried.body, "ok");
    EXPECT_FALSE(retried.interrupted);
    ASSERT_EQ(arrivals.count(), 2U);
    const auto times = arrivals.times();
    EXPECT_GE(times[1] - times[0], 950ms);

    const http::Response stillBusy = get("/busy?always=1&status=429&after=0", &session);
    EXPECT_EQ(stillBusy.statusCode, 429) << "the second answer counts";
    EXPECT_EQ(arrivals.count(), 4U);

    get("/busy?always=1&status=503", &session);
    EXPECT_EQ(arrivals.count(), 5U) << "no Retry-After, no retry";
    get("/busy?always=1&status=500&after=0", &session);
    EXPECT_EQ(arrivals.count(), 6U) << "only 429 and 503 are retried";
    get("/busy?always=1&after=Thu,%2001%20Jan%201970%2000:00:00%20GMT", &session);
    EXPECT_EQ(arrivals.count(), 8U) << "a date in the past: at once";
    get("/busy?always=1&after=soon", &session);
    EXPECT_EQ(arrivals.count(), 9U) << "an unreadable Retry-After is no Retry-After";
}

TEST_F(HttpSession, CancelEndsTheRetryWaitAtOnce) {
    Cancellation cancellation;
    http::Session session;
    session.setCancellation(&cancellation, false);
    std::thread canceller([&] {
        arrivals.waitFor(1);
        cancellation.cancel();
    });
    const http::Response response = get("/busy?after=120", &session);
    canceller.join();
    EXPECT_TRUE(response.interrupted);
    EXPECT_EQ(response.statusCode, 503) << "what answered before the cancel";
    EXPECT_EQ(arrivals.count(), 1U);
}

TEST_F(HttpSession, CancelBreaksOffTransfersOnlyWhenAsked) {
    Cancellation cancellation;
    http::Session session;
    session.setCancellation(&cancellation, true);
    std::thread canceller([&] {
        arrivals.waitFor(1);
        cancellation.cancel();
    });
    const http::Response response = get("/hang", &session);
    canceller.join();
    EXPECT_TRUE(response.interrupted);
    EXPECT_FALSE(response.isHttp);

    // Without being asked to, a cancelled session lets a transfer finish.
    http::Session patient;
    patient.setCancellation(&cancellation, false);
    std::thread releaser([&] {
        arrivals.waitFor(2);
        const std::lock_guard lock(mutex);
        release = true;
        released.notify_all();
    });
    const http::Response finished = get("/hang", &patient);
    releaser.join();
    EXPECT_FALSE(finished.interrupted);
    EXPECT_EQ(finished.body, "late");

    // Once cancelled, a rate-limited request is not even sent.
    session.setRequestsPerSecond(1000);
    EXPECT_TRUE(get("/count", &session).interrupted);
    EXPECT_EQ(arrivals.count(), 2U);
}

TEST(RateLimiter, NoLimitNeverWaitsAndACancelEndsAWait) {
    RateLimiter unlimited(0);
    Cancellation cancelled;
    cancelled.cancel();
    EXPECT_TRUE(unlimited.acquire(&cancelled));
    RateLimiter slow(0.001);
    EXPECT_TRUE(slow.acquire(nullptr));
    Cancellation later;
    std::thread canceller([&] {
        std::this_thread::sleep_for(20ms);
        later.cancel();
    });
    EXPECT_FALSE(slow.acquire(&later)) << "the next turn is 1000 s away";
    canceller.join();
}

}  // namespace
}  // namespace loomcrest
