#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <mutex>
#include <thread>

#include "platform/Http.h"
#include "support/Arrivals.h"
#include "support/TemporaryHome.h"
#include "support/TestServer.h"

namespace loomcrest {
namespace {

using namespace std::chrono_literals;
using test::Arrivals;

class HttpSession : public testing::Test {
protected:
    void SetUp() override {
        auto& routes = server.server();
        routes.Get("/echo", [this](const httplib::Request& req, httplib::Response& res) {
            const std::lock_guard lock(mutex);
            seen = req.headers;
            res.set_content("ok", "text/plain");
        });
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
        routes.Get("/private", [](const httplib::Request& req, httplib::Response& res) {
            // "user:secret" in Base64.
            if (req.get_header_value("Authorization") == "Basic dXNlcjpzZWNyZXQ=") {
                res.set_content("welcome", "text/plain");
            } else {
                res.status = 401;
                res.set_header("WWW-Authenticate", "Basic realm=\"test\"");
            }
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

    std::string seenHeader(const std::string& name) {
        const std::lock_guard lock(mutex);
        const auto found = seen.find(name);
        return found == seen.end() ? "(none)" : found->second;
    }

    test::TestServer server;
    Arrivals arrivals;
    std::mutex mutex;
    std::condition_variable released;
    bool release = false;
    httplib::Headers seen;
};

TEST_F(HttpSession, EveryRequestSaysWhoAsksAndCarriesTheExtraFields) {
    get("/echo", nullptr);
    EXPECT_EQ(seenHeader("User-Agent"),
              std::string("Loomcrest/") + LOOMCREST_VERSION + " (+" + LOOMCREST_REPORT_PROBLEM_URL + ")");
    EXPECT_EQ(seenHeader("Cookie"), "(none)");

    http::Session session;
    EXPECT_EQ(session.userAgent(), http::defaultUserAgent());
    session.setUserAgent("TestBot/2 (+mailto:ops@example.org)");
    session.setExtraHeaders({"Cookie: session=abc; theme=dark", "X-Token:\tt0k3n"});
    get("/echo", &session);
    EXPECT_EQ(seenHeader("User-Agent"), "TestBot/2 (+mailto:ops@example.org)");
    EXPECT_EQ(seenHeader("Cookie"), "session=abc; theme=dark");
    EXPECT_EQ(seenHeader("X-Token"), "t0k3n");
}

TEST_F(HttpSession, BasicAuthComesFromTheUsersNetrc) {
    test::TemporaryHome home;
    test::writeFile(home.path() + "/.netrc", "machine 127.0.0.1 login user password secret\n");
    http::Session session;
    EXPECT_EQ(get("/private", &session).statusCode, 401) << "not without asking for it";
    session.setUseNetrc(true);
    const http::Response response = get("/private", &session);
    EXPECT_EQ(response.statusCode, 200);
    EXPECT_EQ(response.body, "welcome");
}

TEST_F(HttpSession, TheRateHoldsAcrossThreads) {
    http::Session session;
    session.setRequestsPerSecond(20);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 20; ++i) {
                get("/count", &session);
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    ASSERT_EQ(arrivals.count(), 80U);
    // 20 a second allows 41 in two seconds (the first goes at once); the slack is for the
    // machine's noise in when the server notes an arrival, which can bunch arrivals that
    // were sent 50 ms apart.
    EXPECT_LE(arrivals.mostWithin(2s), 46U);
    const auto times = arrivals.times();
    EXPECT_GE(times.back() - times.front(), 3700ms) << "79 intervals of 50 ms";
}

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
