#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Synchronous HTTP over libcurl. Each thread reuses one connection handle, so requests to
// the same server keep their connection alive. Only http and https are spoken.
namespace loomcrest::http {

using Seconds = std::chrono::seconds;

// What a client waits for when the caller names no time-out.
inline constexpr Seconds kDefaultTimeout{60};

enum class Redirects { Follow, Report };

struct Request {
    std::string url;
    std::string method = "GET";
    Seconds timeout = kDefaultTimeout;
    Redirects redirects = Redirects::Follow;
};

struct Response {
    // False when nothing answered in HTTP: no connection, a time-out, another protocol.
    bool isHttp = false;
    long statusCode = 0;
    // Header fields of the last response, in the order received.
    std::vector<std::pair<std::string, std::string>> headers;
    // The media type of Content-Type in lower case, without parameters; empty when absent.
    std::string mimeType;
    std::string body;

    // The first header field of that name, compared without regard to case.
    std::optional<std::string> header(std::string_view name) const;
};

Response send(const Request& request);

// Caps the time-out of every request from now on, on every thread; zero lifts the cap.
// Tests of unresponsive servers use it to keep their runs short.
void setTimeoutLimit(std::chrono::milliseconds limit);

// Closes the connections this thread keeps alive.
void closeThreadConnections();

// The body of whatever answers at `url` after redirects, or nothing when nothing did.
std::optional<std::string> fetchBytes(std::string_view url);
// The same, but only when the body is valid UTF-8 text.
std::optional<std::string> fetchText(std::string_view url);

// The standard reason phrase of a status code ("Not Found"), empty for an unknown code.
std::string_view reasonPhrase(long statusCode);
// "404 - Not Found": the code, " - " and its reason phrase.
std::string statusText(long statusCode);

// Parses an HTTP date leniently (RFC 1123, RFC 850, asctime and similar forms).
std::optional<std::chrono::system_clock::time_point> parseHttpDate(std::string_view text);

}  // namespace loomcrest::http
