#pragma once

#include <httplib.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/Http.h"

namespace loomcrest::test {

// An HTTP server on a free port of 127.0.0.1, running for the lifetime of the object.
// Register handlers on server() before calling start().
class TestServer {
public:
    TestServer() = default;
    TestServer(const TestServer&) = delete;
    TestServer& operator=(const TestServer&) = delete;
    ~TestServer() { stop(); }

    // Returns once every handler has returned.
    void stop() {
        // The server waits for kept-alive connections to close before it stops.
        http::closeThreadConnections();
        server_.stop();
        if (thread_.joinable()) {
            thread_.join();
        }
    }

    httplib::Server& server() { return server_; }

    void start() {
        server_.set_tcp_nodelay(true);
        // A kept-alive connection holds a thread, and a scan may keep many open at once.
        server_.new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
        port_ = server_.bind_to_any_port("127.0.0.1");
        thread_ = std::thread([this] { server_.listen_after_bind(); });
        while (!server_.is_running()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    // "http://127.0.0.1:PORT" followed by `path`.
    std::string url(const std::string& path = "/") const {
        return "http://127.0.0.1:" + std::to_string(port_) + path;
    }

private:
    static constexpr size_t kThreads = 32;

    httplib::Server server_;
    std::thread thread_;
    int port_ = 0;
};

// When requests reached a test server, noted from its handler threads.
class Arrivals {
public:
    using Clock = std::chrono::steady_clock;

    void note() {
        {
            const std::lock_guard lock(mutex_);
            times_.push_back(Clock::now());
        }
        arrived_.notify_all();
    }

    size_t count() const {
        const std::lock_guard lock(mutex_);
        return times_.size();
    }

    // Waits until `count` requests have arrived; false when that took longer than `limit`.
    bool waitFor(size_t count, std::chrono::seconds limit = std::chrono::seconds(30)) const {
        std::unique_lock lock(mutex_);
        return arrived_.wait_for(lock, limit, [&] { return times_.size() >= count; });
    }

    std::vector<Clock::time_point> times() const {
        const std::lock_guard lock(mutex_);
        auto sorted = times_;
        std::sort(sorted.begin(), sorted.end());
        return sorted;
    }

    // The most arrivals that fall in any window of that length.
    size_t mostWithin(Clock::duration window) const {
        const auto sorted = times();
        size_t most = 0;
        for (auto first = sorted.begin(); first != sorted.end(); ++first) {
            const auto end = std::lower_bound(first, sorted.end(), *first + window);
            most = std::max(most, static_cast<size_t>(end - first));
        }
        return most;
    }

private:
    mutable std::mutex mutex_;
    mutable std::condition_variable arrived_;
    std::vector<Clock::time_point> times_;
};

}  // namespace loomcrest::test
