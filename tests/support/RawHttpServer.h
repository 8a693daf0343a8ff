#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace loomcrest::test {

// A bare HTTP server on 127.0.0.1 for what a well-behaved server library will not do:
// odd request targets, no answer at all, endless or dribbling bodies. Each connection gets
// the request head and writes whatever it likes, one connection at a time.
class RawHttpServer {
public:
    // Called with the connection and the request head; returns when done with it.
    using Handler = std::function<void(int connection, const std::string& requestHead,
                                       const std::atomic<bool>& stopping)>;
    // What the server does for one request target.
    using Route = std::function<void(int connection, const std::atomic<bool>& stopping)>;
    // Routes by exact request target; a target not listed is answered 404.
    using Routes = std::map<std::string, Route>;

    explicit RawHttpServer(Handler handler) : handler_(std::move(handler)) {
        listener_ = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        ::bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address);
        ::listen(listener_, 16);
        socklen_t length = sizeof address;
        ::getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length);
        port_ = ntohs(address.sin_port);
        thread_ = std::thread([this] { serve(); });
    }
    explicit RawHttpServer(Routes routes)
        : RawHttpServer([routes = std::move(routes)](int connection, const std::string& head,
                                                     const std::atomic<bool>& stopping) {
              // The request target: "/a?b" of "GET /a?b HTTP/1.1".
              const size_t start = head.find(' ') + 1;
              const auto route = routes.find(head.substr(start, head.find(' ', start) - start));
              if (route == routes.end()) {
                  send(connection, response("404 Not Found", "text/html", ""));
              } else {
                  route->second(connection, stopping);
              }
          }) {}
    RawHttpServer(const RawHttpServer&) = delete;
    RawHttpServer& operator=(const RawHttpServer&) = delete;
    ~RawHttpServer() {
        stopping_ = true;
        thread_.join();
        ::close(listener_);
    }

    std::string url(const std::string& target = "/") const {
        return "http://127.0.0.1:" + std::to_string(port_) + target;
    }
    std::vector<std::string> requestLines() const {
        const std::lock_guard lock(mutex_);
        return requestLines_;
    }

    // Writes all of `data`; false once the client has gone.
    static bool send(int connection, std::string_view data) {
        while (!data.empty()) {
            const ssize_t sent = ::send(connection, data.data(), data.size(), MSG_NOSIGNAL);
            if (sent <= 0) {
                return false;
            }
            data.remove_prefix(static_cast<size_t>(sent));
        }
        return true;
    }

    static std::string response(std::string_view status, std::string_view contentType,
                                std::string_view body) {
        return "HTTP/1.1 " + std::string(status) + "\r\nContent-Type: " + std::string(contentType) +
               "\r\nContent-Length: " + std::to_string(body.size()) +
               "\r\nConnection: close\r\n\r\n" + std::string(body);
    }

    // Writes `answer` as it stands.
    static Route whole(std::string answer) {
        return [answer = std::move(answer)](int connection, const std::atomic<bool>&) {
            send(connection, answer);
        };
    }
    static Route page(std::string_view body, std::string_view contentType = "text/html") {
        return whole(response("200 OK", contentType, body));
    }
    static Route redirect(std::string_view status, std::string_view location) {
        return whole("HTTP/1.1 " + std::string(status) + "\r\nLocation: " + std::string(location) +
                     "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    }
    // Never answers; returns once the client hangs up.
    static Route silent() {
        return [](int connection, const std::atomic<bool>& stopping) {
            char buffer[256];
            while (!stopping) {
                pollfd readable{connection, POLLIN, 0};
                if (::poll(&readable, 1, 20) > 0 &&
                    ::recv(connection, buffer, sizeof buffer, 0) <= 0) {
                    return;
                }
            }
        };
    }
    // Promises a long page and sends one byte of it every 100 ms.
    static Route dribbling() {
        return [](int connection, const std::atomic<bool>& stopping) {
            send(connection,
                 "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n"
                 "Content-Length: 100000\r\n\r\n<title>");
            while (!stopping && send(connection, "x")) {
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
            }
        };
    }
    // A body without a length that never ends.
    static Route endless() {
        return [](int connection, const std::atomic<bool>& stopping) {
            send(connection, "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n\r\n");
            const std::string chunk(64 * 1024, 'a');
            while (!stopping && send(connection, chunk)) {
            }
        };
    }

private:
    void serve() {
        while (!stopping_) {
            pollfd waiting{listener_, POLLIN, 0};
            if (::poll(&waiting, 1, 20) <= 0) {
                continue;
            }
            const int connection = ::accept(listener_, nullptr, nullptr);
            if (connection < 0) {
                continue;
            }
            std::string head;
            char buffer[4096];
            while (head.find("\r\n\r\n") == std::string::npos && !stopping_) {
                pollfd readable{connection, POLLIN, 0};
                if (::poll(&readable, 1, 20) <= 0) {
                    continue;
                }
                const ssize_t got = ::recv(connection, buffer, sizeof buffer, 0);
                if (got <= 0) {
                    break;
                }
                head.append(buffer, static_cast<size_t>(got));
            }
            {
                const std::lock_guard lock(mutex_);
                requestLines_.push_back(head.substr(0, head.find("\r\n")));
            }
            handler_(connection, head, stopping_);
            ::close(connection);
        }
    }

    Handler handler_;
    int listener_ = -1;
    int port_ = 0;
    std::atomic<bool> stopping_{false};
    std::thread thread_;
    mutable std::mutex mutex_;
    std::vector<std::string> requestLines_;
};

}  // namespace loomcrest::test
