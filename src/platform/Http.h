#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Cancellation.h"
#include "platform/RateLimiter.h"

// Synchronous HTTP over libcurl. Each thread reuses one connection handle, so requests to
// the same server keep their connection alive. Only http and https are spoken.
namespace loomcrest::http {

using Seconds = std::chrono::seconds;

// What a client waits for when the caller names no time-out.
inline constexpr Seconds kDefaultTimeout{60};

// The longest wait a Retry-After answer gets before its one retry.
inline constexpr Seconds kMaxRetryAfter{60};

enum class Redirects { Follow, Report };

// "Loomcrest/VERSION (+PAGE)", PAGE being LOOMCREST_REPORT_PROBLEM_URL of the build: what
// every request says it comes from unless a session says otherwise.
std::string_view defaultUserAgent();

// What every request of one crawl carries and obeys, shared by all its threads: the user
// agent and extra header fields, credentials from ~/.netrc, a rate limit and the user's
// cancel, which ends rate-limit and Retry-After waits at once.
class Session {
public:
    Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

    void setUserAgent(std::string userAgent) { userAgent_ = std::move(userAgent); }
    // Header lines "Name: value", checked by the caller.
    void setExtraHeaders(const std::vector<std::string>& headers);
    void setUseNetrc(bool useNetrc) { useNetrc_ = useNetrc; }
    // Zero: no limit.
    void setRequestsPerSecond(double requestsPerSecond);
    // With `abortTransfers`, a cancel also breaks off the transfers under way.
    void setCancellation(const Cancellation* cancellation, bool abortTransfers);

    const std::string& userAgent() const { return userAgent_; }
    bool useNetrc() const { return useNetrc_; }
    RateLimiter& rateLimiter() const { return *rateLimiter_; }
    const Cancellation* cancellation() const { return cancellation_; }
    bool abortsTransfers() const { return abortTransfers_; }
    // The extra header fields as libcurl takes them; null when there are none.
    void* headerList() const { return headerList_.get(); }

private:
    struct HeaderListDeleter {
        void operator()(void* list) const;
    };

    std::string userAgent_;
    std::unique_ptr<void, HeaderListDeleter> headerList_;
    bool useNetrc_ = false;
    std::unique_ptr<RateLimiter> rateLimiter_;
    const Cancellation* cancellation_ = nullptr;
    bool abortTransfers_ = false;
};

struct Request {
    std::string url;
    std::string method = "GET";
    Seconds timeout = kDefaultTimeout;
    Redirects redirects = Redirects::Follow;
    // Null: the default user agent, no limit, nothing to cancel.
    const Session* session = nullptr;
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
    // The session's cancel came while the request waited for its turn, waited to retry, or
    // was under way; what it holds is whatever had answered before.
    bool interrupted = false;
    // Why nothing answered in HTTP, in a few words ("Connection refused", "Timed out", the
    // resolver's message); empty when the server answered.
    std::string errorText;
};

// Sends the request and returns the last response. A 429 or 503 answer that carries
// Retry-After (seconds or a date) is sent once more after that time, waiting no longer than
// kMaxRetryAfter; the second answer counts, whatever it is.
Response send(const Request& request);

// Shown every request just before it goes on the wire (a retry is shown again), on the
// thread that sends it; nothing when empty. Tests use it to see what a scan asks for.
using RequestObserver = std::function<void(const Request&)>;
void setRequestObserver(RequestObserver observer);

// Caps the time-out of every request from now on, on every thread; zero lifts the cap.
// Tests of unresponsive servers use it to keep their runs short.
void setTimeoutLimit(std::chrono::milliseconds limit);

// Closes the connections this thread keeps alive.
void closeThreadConnections();

// The body of whatever answers at `url` after redirects within `timeout`, or nothing when
// nothing did.
std::optional<std::string> fetchBytes(std::string_view url, Seconds timeout,
                                      const Session* session = nullptr);
// The same, but only when the body is valid UTF-8 text.
std::optional<std::string> fetchText(std::string_view url, Seconds timeout,
                                     const Session* session = nullptr);

// The standard reason phrase of a status code ("Not Found"), empty for an unknown code.
std::string_view reasonPhrase(long statusCode);
// "404 - Not Found": the code, " - " and its reason phrase.
std::string statusText(long statusCode);

}  // namespace loomcrest::http
