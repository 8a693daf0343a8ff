#pragma once

#include <httplib.h>

#include <chrono>
#include <string>
#include <thread>

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

}  // namespace loomcrest::test
