#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

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

// Only the last response counts: the fields of a followed redirect or of an interim
// "100 Continue" are not its fields.
struct Response {
    // False when nothing answered in HTTP: no connection, a time-out, another protocol.
    bool isHttp = false;
    long statusCode = 0;
    // The media type of Content-Type in lower case, without parameters; empty when absent.
    std::string mimeType;
    // Last-Modified, read leniently (RFC 1123, RFC 850, asctime and similar forms); nothing
    // when absent or unreadable.
    std::optional<std::chrono::system_clock::time_point> lastModified;
    std::string body;
    // Why nothing answered in HTTP, in a few words ("Connection refused", "Timed out", the
    // resolver's message); empty when the server answered.
    std::string errorText;
};

Response send(const Request& request);

// Shown every request just before it is sent, on the thread that sends it; nothing when
// empty. Tests use it to see what a scan asks for.
using RequestObserver = std::function<void(const Request&)>;
void setRequestObserver(RequestObserver observer);

// Caps the time-out of every request from now on, on every thread; zero lifts the cap.
// Tests of unresponsive servers use it to keep their runs short.
void setTimeoutLimit(std::chrono::milliseconds limit);

// Closes the connections this thread keeps alive.
void closeThreadConnections();

// The body of whatever answers at `url` after redirects within `timeout`, or nothing when
// nothing did.
std::optional<std::string> fetchBytes(std::string_view url, Seconds timeout);
// The same, but only when the body is valid UTF-8 text.
std::optional<std::string> fetchText(std::string_view url, Seconds timeout);

// The standard reason phrase of a status code ("Not Found"), empty for an unknown code.
std::string_view reasonPhrase(long statusCode);
// "404 - Not Found": the code, " - " and its reason phrase.
std::string statusText(long statusCode);

}  // namespace loomcrest::http
