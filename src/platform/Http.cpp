#include "platform/Http.h"

#include <curl/curl.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cctype>
#include <cstring>
#include <memory>
#include <mutex>
#include <thread>

#include "platform/Text.h"

namespace loomcrest::http {

namespace {

constexpr long kMaxRedirects = 10;
constexpr std::string_view kUserAgent =
    "Loomcrest/" LOOMCREST_VERSION " (+" LOOMCREST_REPORT_PROBLEM_URL ")";
constexpr long kTooManyRequests = 429;
constexpr long kServiceUnavailable = 503;
// A body larger than this is abandoned as if nothing had answered, so that a hostile
// server cannot exhaust memory.
constexpr size_t kMaxBodyBytes = size_t{50} * 1024 * 1024;

std::atomic<int64_t> timeoutLimitMilliseconds{0};

std::mutex observerMutex;
RequestObserver requestObserver;

void showToObserver(const Request& request) {
    RequestObserver observer;
    {
        const std::lock_guard lock(observerMutex);
        observer = requestObserver;
    }
    if (observer) {
        observer(request);
    }
}

struct CurlDeleter {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};

void initialiseCurlOnce() {
    static const bool initialised = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    (void)initialised;
}

// One handle per thread: libcurl keeps its connection cache in the handle, so reusing it
// keeps connections to the scanned server alive between requests.
std::unique_ptr<CURL, CurlDeleter>& threadHandleSlot() {
    thread_local std::unique_ptr<CURL, CurlDeleter> handle;
    return handle;
}

CURL* threadHandle() {
    initialiseCurlOnce();
    auto& handle = threadHandleSlot();
    if (handle) {
        curl_easy_reset(handle.get());
    } else {
        handle.reset(curl_easy_init());
    }
    return handle.get();
}

size_t collectBody(char* data, size_t size, size_t count, void* target) {
    auto* body = static_cast<std::string*>(target);
    if (body->size() + (size * count) > kMaxBodyBytes) {
        return 0;
    }
    body->append(data, size * count);
    return size * count;
}

// The first field of that name in the last response; the 1xx answers before it and the
// redirects that led to it are not looked at.
std::optional<std::string> lastResponseField(CURL* curl, const char* name) {
    curl_header* field = nullptr;
    if (curl_easy_header(curl, name, 0, CURLH_HEADER, -1, &field) != CURLHE_OK) {
        return std::nullopt;
    }
    return std::string(field->value);
}

std::string_view trimmed(std::string_view text) {
    const auto isBlank = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::string mediaType(std::string_view contentType) {
    return lowerCase(trimmed(contentType.substr(0, contentType.find(';'))));
}

std::optional<std::chrono::system_clock::time_point> httpDate(const std::string& text) {
    const time_t seconds = curl_getdate(text.c_str(), nullptr);
    if (seconds == -1) {
        return std::nullopt;
    }
    return std::chrono::system_clock::from_time_t(seconds);
}

// A few words on why a transfer got no HTTP answer: the system's reason where one lies
// beneath, libcurl's own message otherwise.
std::string failureText(CURL* curl, CURLcode result, const char* detail) {
    long systemError = 0;
    curl_easy_getinfo(curl, CURLINFO_OS_ERRNO, &systemError);
    switch (result) {
        case CURLE_OK:
            return "No HTTP answer";
        case CURLE_OPERATION_TIMEDOUT:
            return "Timed out";
        case CURLE_TOO_MANY_REDIRECTS:
            return "Too many redirects";
        case CURLE_WRITE_ERROR:
            return "The answer is larger than 50 MB";
        case CURLE_GOT_NOTHING:
            return "The server closed the connection without answering";
        case CURLE_COULDNT_CONNECT:
        case CURLE_RECV_ERROR:
        case CURLE_SEND_ERROR:
            if (systemError != 0) {
                return std::strerror(static_cast<int>(systemError));
            }
            break;
        default:
            break;
    }
    return detail[0] != '\0' ? std::string(detail) : std::string(curl_easy_strerror(result));
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Called by libcurl during a transfer, at least once a second; non-zero breaks it off.
int abortWhenCancelled(void* cancellation, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    return static_cast<const Cancellation*>(cancellation)->isCancelled() ? 1 : 0;
}

void applySession(CURL* curl, const Session* session) {
    if (session == nullptr) {
        curl_easy_setopt(curl, CURLOPT_USERAGENT, kUserAgent.data());
        return;
    }
    curl_easy_setopt(curl, CURLOPT_USERAGENT, session->userAgent().c_str());
    if (session->headerList() != nullptr) {
        curl_easy_setopt(curl, CURLOPT_HTTPHEADER, session->headerList());
    }
    if (session->useNetrc()) {
        curl_easy_setopt(curl, CURLOPT_NETRC, static_cast<long>(CURL_NETRC_OPTIONAL));
    }
    if (session->abortsTransfers() && session->cancellation() != nullptr) {
        curl_easy_setopt(curl, CURLOPT_NOPROGRESS, 0L);
        curl_easy_setopt(curl, CURLOPT_XFERINFOFUNCTION, abortWhenCancelled);
        curl_easy_setopt(curl, CURLOPT_XFERINFODATA, session->cancellation());
    }
}

// How long a 429 or 503 answer asks us to wait before asking again, capped; nothing when
// it is another answer or says nothing readable.
std::optional<std::chrono::milliseconds> retryDelay(CURL* curl, long status) {
    if (status != kTooManyRequests && status != kServiceUnavailable) {
        return std::nullopt;
    }
    const auto field = lastResponseField(curl, "Retry-After");
    if (!field) {
        return std::nullopt;
    }
    const std::string value(trimmed(*field));
    std::chrono::milliseconds delay{};
    if (!value.empty() && std::all_of(value.begin(), value.end(), isDigit)) {
        const auto seconds = value.size() > 6 ? kMaxRetryAfter.count() : std::stol(value);
        delay = std::chrono::seconds(seconds);
    } else if (const auto when = httpDate(value)) {
        delay = std::chrono::duration_cast<std::chrono::milliseconds>(
            *when - std::chrono::system_clock::now());
    } else {
        return std::nullopt;
    }
    return std::clamp<std::chrono::milliseconds>(delay, std::chrono::milliseconds::zero(),
                                                 kMaxRetryAfter);
}

struct Attempt {
    Response response;
    std::optional<std::chrono::milliseconds> retryAfter;
};

Attempt performOnce(const Request& request) {
    Attempt attempt;
    Response& response = attempt.response;
    showToObserver(request);
    CURL* curl = threadHandle();
    if (curl == nullptr) {
        response.errorText = "The HTTP library could not be started";
        return attempt;
    }
    std::array<char, CURL_ERROR_SIZE> detail{};
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, detail.data());
    curl_easy_setopt(curl, CURLOPT_URL, request.url.c_str());
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(curl, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl, CURLOPT_ACCEPT_ENCODING, "");
    applySession(curl, request.session);
    auto timeout = std::chrono::duration_cast<std::chrono::milliseconds>(request.timeout);
    if (const int64_t limit = timeoutLimitMilliseconds; limit > 0) {
        timeout = std::min(timeout, std::chrono::milliseconds(limit));
    }
    curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, static_cast<long>(timeout.count()));
    const bool follow = request.redirects == Redirects::Follow;
    curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, follow ? 1L : 0L);
    curl_easy_setopt(curl, CURLOPT_MAXREDIRS, kMaxRedirects);
    if (request.method == "HEAD") {
        curl_easy_setopt(curl, CURLOPT_NOBODY, 1L);
    } else if (request.method != "GET") {
        curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, request.method.c_str());
    }
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, collectBody);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &response.body);

    const CURLcode result = curl_easy_perform(curl);
    long status = 0;
    curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &status);
    if (result != CURLE_OK || status == 0) {
        attempt.response = Response{};
        attempt.response.interrupted = result == CURLE_ABORTED_BY_CALLBACK;
        attempt.response.errorText = failureText(curl, result, detail.data());
        curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, nullptr);
        return attempt;
    }
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, nullptr);
    response.isHttp = true;
    response.statusCode = status;
    if (const auto contentType = lastResponseField(curl, "Content-Type")) {
        response.mimeType = mediaType(*contentType);
    }
    if (const auto modified = lastResponseField(curl, "Last-Modified")) {
        response.lastModified = httpDate(*modified);
    }
    attempt.retryAfter = retryDelay(curl, status);
    return attempt;
}

// Waits for the session's next turn; false when its cancel came first.
bool awaitTurn(const Session* session) {
    return session == nullptr || session->rateLimiter().acquire(session->cancellation());
}

// Sleeps before the retry; false when the session's cancel came first.
bool waitToRetry(const Session* session, std::chrono::milliseconds delay) {
    const Cancellation* cancellation = session != nullptr ? session->cancellation() : nullptr;
    if (cancellation == nullptr) {
        std::this_thread::sleep_for(delay);
        return true;
    }
    return cancellation->sleepFor(delay);
}

}  // namespace

Session::Session() : userAgent_(kUserAgent), rateLimiter_(std::make_unique<RateLimiter>(0)) {}

Session::~Session() = default;

void Session::HeaderListDeleter::operator()(void* list) const {
    curl_slist_free_all(static_cast<curl_slist*>(list));
}

void Session::setExtraHeaders(const std::vector<std::string>& headers) {
    curl_slist* list = nullptr;
    for (const std::string& header : headers) {
        curl_slist* longer = curl_slist_append(list, header.c_str());
        if (longer == nullptr) {
            break;  // out of memory: the headers that fitted are sent
        }
        list = longer;
    }
    headerList_.reset(list);
}

void Session::setRequestsPerSecond(double requestsPerSecond) {
    rateLimiter_ = std::make_unique<RateLimiter>(requestsPerSecond);
}

void Session::setCancellation(const Cancellation* cancellation, bool abortTransfers) {
    cancellation_ = cancellation;
    abortTransfers_ = abortTransfers;
}

std::string_view defaultUserAgent() {
    return kUserAgent;
}

Response send(const Request& request) {
    if (!awaitTurn(request.session)) {
        Response nothing;
        nothing.interrupted = true;
        return nothing;
    }
    Attempt first = performOnce(request);
    if (!first.retryAfter) {
        return std::move(first.response);
    }
    if (!waitToRetry(request.session, *first.retryAfter) || !awaitTurn(request.session)) {
        first.response.interrupted = true;
        return std::move(first.response);
    }
    return std::move(performOnce(request).response);
}

void setRequestObserver(RequestObserver observer) {
    const std::lock_guard lock(observerMutex);
    requestObserver = std::move(observer);
}

void setTimeoutLimit(std::chrono::milliseconds limit) {
    timeoutLimitMilliseconds = limit.count();
}

void closeThreadConnections() {
    threadHandleSlot().reset();
}

std::optional<std::string> fetchBytes(std::string_view url, Seconds timeout,
                                      const Session* session) {
    Request request;
    request.url = url;
    request.timeout = timeout;
    request.session = session;
    Response response = send(request);
    if (!response.isHttp) {
        return std::nullopt;
    }
    return std::move(response.body);
}

std::optional<std::string> fetchText(std::string_view url, Seconds timeout,
                                     const Session* session) {
    auto body = fetchBytes(url, timeout, session);
    if (!body || !isValidUtf8(*body)) {
        return std::nullopt;
    }
    return body;
}

std::string statusText(long statusCode) {
    return std::to_string(statusCode) + " - " + std::string(reasonPhrase(statusCode));
}

}  // namespace loomcrest::http
