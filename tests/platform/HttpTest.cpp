#include "platform/Http.h"

#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <set>
#include <thread>
#include <tuple>

#include "support/RawHttpServer.h"
#include "support/TestServer.h"

namespace loomcrest {
namespace {

using test::RawHttpServer;
using namespace std::chrono_literals;

constexpr http::Seconds kWait{20};

// A response as one line: status, media type and Last-Modified (seconds since 1970), then the
// body or why nothing answered in HTTP.
std::string summary(const http::Response& response) {
    std::string text = std::to_string(response.statusCode) + " " + response.mimeType;
    if (response.lastModified) {
        text += " " + std::to_string(std::chrono::system_clock::to_time_t(*response.lastModified));
    }
    return text + (response.isHttp ? " | " + response.body : " ! " + response.errorText);
}

const std::string kEnd = "Content-Length: 2\r\nConnection: close\r\n\r\nok";
const std::string kFields =
    "Content-Type: text/html\r\nLast-Modified: Sun, 06 Nov 1994 08:49:37 GMT\r\n";

RawHttpServer::Route dated(const std::string& date) {
    return RawHttpServer::whole("HTTP/1.1 200 OK\r\nLast-Modified: " + date + "\r\n" + kEnd);
}

// Only the last response counts, and the first of repeated fields; a server that never answers
// times out.
TEST(Http, AnswersFieldsAndTheReasonsForNoAnswer) {
    const RawHttpServer server(RawHttpServer::Routes{
        {"/moved",
         RawHttpServer::whole("HTTP/1.1 302 Found\r\nLocation: /bare\r\n" + kFields + kEnd)},
        {"/bare", RawHttpServer::whole("HTTP/1.1 200 OK\r\n" + kEnd)},
        {"/interim", RawHttpServer::whole("HTTP/1.1 100 Continue\r\n" + kFields +
                                          "\r\nHTTP/1.1 200 OK\r\n" + kEnd)},
        {"/repeated",
         RawHttpServer::whole("HTTP/1.1 200 OK\r\nContent-Type:  Text/HTML ; charset=x\r\n"
                              "Content-Type: text/plain\r\nLast-Modified: Sun, 06 Nov 1994 "
                              "08:49:37 GMT\r\nLast-Modified: Mon, 07 Nov 1994 08:49:37 GMT\r\n" +
                              kEnd)},
        {"/rfc850", dated("Sunday, 06-Nov-94 08:49:37 GMT")},
        {"/vague", dated("yesterday-ish")},
        {"/silent", RawHttpServer::silent()},
        {"/latin1", RawHttpServer::page("caf\xe9", "text/plain")},
    });
    const auto follow = http::Redirects::Follow;
    const std::vector<std::tuple<std::string, std::string, http::Redirects>> cases = {
        {"/moved", "200  | ok", follow},
        {"/moved", "302 text/html 784111777 | ok", http::Redirects::Report},
        {"/interim", "200  | ok", follow},
        {"/repeated", "200 text/html 784111777 | ok", follow},
        {"/rfc850", "200  784111777 | ok", follow},
        {"/vague", "200  | ok", follow},
        {"/silent", "0  ! Timed out", follow},
        {"http://nowhere.invalid/", "0  ! Could not resolve host: nowhere.invalid", follow},
        {"file:///etc/hostname", "0  ! Protocol \"file\" not supported or disabled in libcurl",
         follow},
    };
    for (const auto& [target, expected, redirects] : cases) {
        http::Request request;
        request.url = target.starts_with("/") ? server.url(target) : target;
        request.redirects = redirects;
        request.timeout = http::Seconds{1};
        EXPECT_EQ(summary(http::send(request)), expected) << target;
    }
    // Text fetches refuse malformed UTF-8.
    EXPECT_EQ(http::fetchBytes(server.url("/latin1"), kWait), "caf\xe9");
    EXPECT_EQ(http::fetchText(server.url("/latin1"), kWait), std::nullopt);
    EXPECT_EQ(http::fetchText(server.url("/bare"), kWait), "ok");
}

using test::Arrivals;

class HttpSession : public testing::Test {
protected:
    void SetUp() override {
        auto& routes = server.server();
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
        routes.Get("/peer", [this](const httplib::Request& req, httplib::Response& res) {
            const std::lock_guard lock(mutex);
            peers.insert(req.remote_port);
            res.set_content("x", "text/plain");
        });
        server.start();
    }

    void TearDown() override { releaseHung(); }

    void releaseHung() {
        const std::lock_guard lock(mutex);
        release = true;
        released.notify_all();
    }

    // Cancels `cancellation` from a thread of its own once `count` requests have arrived.
    std::jthread cancelOnArrival(size_t count, Cancellation& cancellation) {
        return std::jthread([this, count, &cancellation] {
            arrivals.waitFor(count);
            cancellation.cancel();
        });
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
    std::set<int> peers;
};

TEST_F(HttpSession, ConnectionsAreKeptAliveOnAThread) {
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(http::fetchBytes(server.url("/peer"), kWait), "x");
    }
    server.stop();
    EXPECT_EQ(peers.size(), 1U) << "every request came over the same connection";
}

TEST_F(HttpSession, RetryAfterIsHonouredOnce) {
    http::Session session;
    const http::Response retried = get("/busy?after=1", &session);
    EXPECT_EQ(summary(retried), "200 text/plain | ok");
    EXPECT_FALSE(retried.interrupted);
    ASSERT_EQ(arrivals.count(), 2U);
    const auto times = arrivals.times();
    EXPECT_GE(times[1] - times[0], 950ms);

    // Busy every time: the answer that counts and the requests that reached the server.
    const std::vector<std::tuple<std::string, long, size_t>> cases = {
        {"status=429&after=0", 429, 2},                             // the second answer counts
        {"status=500&after=0", 500, 1},                             // only 429 and 503 are retried
        {"after=Thu,%2001%20Jan%201970%2000:00:00%20GMT", 503, 2},  // a date in the past: at once
        {"after=soon", 503, 1},  // an unreadable Retry-After is no Retry-After
    };
    for (const auto& [query, status, requests] : cases) {
        const size_t before = arrivals.count();
        EXPECT_EQ(get("/busy?always=1&" + query, &session).statusCode, status) << query;
        EXPECT_EQ(arrivals.count() - before, requests) << query;
    }
}

// A cancel ends a Retry-After wait at once, but breaks off a transfer only when asked to.
TEST_F(HttpSession, CancelEndsTheRetryWaitAtOnceAndTransfersOnlyWhenAsked) {
    Cancellation first;
    http::Session waiting;
    waiting.setCancellation(&first, false);
    const std::jthread firstCanceller = cancelOnArrival(1, first);
    const http::Response retry = get("/busy?after=120", &waiting);
    EXPECT_TRUE(retry.interrupted);
    EXPECT_EQ(retry.statusCode, 503) << "what answered before the cancel";
    EXPECT_EQ(arrivals.count(), 1U);

    Cancellation later;
    http::Session session;
    session.setCancellation(&later, true);
    const std::jthread laterCanceller = cancelOnArrival(2, later);
    const http::Response response = get("/hang", &session);
    EXPECT_TRUE(response.interrupted);
    EXPECT_FALSE(response.isHttp);

    // Without being asked to, a cancelled session lets a transfer finish.
    http::Session patient;
    patient.setCancellation(&later, false);
    const std::jthread releaser([this] {
        arrivals.waitFor(3);
        releaseHung();
    });
    const http::Response finished = get("/hang", &patient);
    EXPECT_FALSE(finished.interrupted);
    EXPECT_EQ(finished.body, "late");

    // Once cancelled, a rate-limited request is not even sent.
    session.setRequestsPerSecond(1000);
    EXPECT_TRUE(get("/busy", &session).interrupted);
    EXPECT_EQ(arrivals.count(), 3U);
}

TEST(RateLimiter, ACancelEndsAWait) {
    RateLimiter slow(0.001);
    EXPECT_TRUE(slow.acquire(nullptr));
    Cancellation later;
    const std::jthread canceller([&] {
        std::this_thread::sleep_for(20ms);
        later.cancel();
    });
    EXPECT_FALSE(slow.acquire(&later)) << "the next turn is 1000 s away";
}

}  // namespace
}  // namespace loomcrest
