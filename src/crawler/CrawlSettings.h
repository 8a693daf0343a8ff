#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace loomcrest {

// How a site is crawled: how many connections fetch pages ahead, how fast, under which
// user agent, with which extra header fields and credentials. The setters take any value;
// problem() says whether the whole is allowed, in the words the user is shown.
class CrawlSettings {
public:
    static constexpr int kMinConnections = 1;
    static constexpr int kMaxConnections = 16;
    static constexpr double kMaxRequestsPerSecond = 1000;

    // "Loomcrest/VERSION (+PAGE)", PAGE being the project page of the build.
    static std::string defaultUserAgent();

    int connections() const { return connections_; }
    void setConnections(int connections) { connections_ = connections; }
    // Zero: no limit.
    double requestsPerSecond() const { return requestsPerSecond_; }
    void setRequestsPerSecond(double rate) { requestsPerSecond_ = rate; }
    const std::string& userAgent() const { return userAgent_; }
    void setUserAgent(std::string userAgent) { userAgent_ = std::move(userAgent); }
    // Each URL is asked for once, with one GET that serves every use of the page.
    bool fetchOnce() const { return fetchOnce_; }
    void setFetchOnce(bool fetchOnce) { fetchOnce_ = fetchOnce; }
    // Header lines "Name: value" sent with every request.
    const std::vector<std::string>& extraHeaders() const { return extraHeaders_; }
    void setExtraHeaders(std::vector<std::string> headers) { extraHeaders_ = std::move(headers); }
    void addExtraHeader(std::string header) { extraHeaders_.push_back(std::move(header)); }
    // Basic-auth credentials come from the user's ~/.netrc; they are never stored by us.
    bool useNetrc() const { return useNetrc_; }
    void setUseNetrc(bool useNetrc) { useNetrc_ = useNetrc; }

    // The message for the first value that is not allowed; nothing when all are.
    std::optional<std::string> problem() const;
    bool isValid() const { return !problem().has_value(); }

    bool operator==(const CrawlSettings&) const = default;

private:
    int connections_ = 1;
    double requestsPerSecond_ = 0;
    std::string userAgent_ = defaultUserAgent();
    bool fetchOnce_ = false;
    std::vector<std::string> extraHeaders_;
    bool useNetrc_ = false;
};

// The messages of problem(), also given for typed text that is not a value at all.
inline constexpr std::string_view kConnectionsProblem =
    "Connections must be a whole number from 1 to 16.";
inline constexpr std::string_view kRateProblem =
    "Requests per second must be a number from 0 (no limit) to 1000.";
inline constexpr std::string_view kUserAgentProblem =
    "The user agent must not be empty and must not hold control characters.";
// Followed by the header as given and kHeaderProblemEnd.
inline constexpr std::string_view kHeaderProblemStart = "The extra header \"";
inline constexpr std::string_view kHeaderProblemEnd = "\" must have the form \"Name: value\".";

// Typed text as the command line and the window read it: digits for connections; digits
// with at most one "." for the rate; "on" or "off" for a switch. Nothing for other text.
std::optional<int> connectionsFromText(std::string_view text);
std::optional<double> rateFromText(std::string_view text);
std::optional<bool> switchFromText(std::string_view text);

// The rate as the user would type it: "0", "20", "0.5".
std::string rateText(double requestsPerSecond);

}  // namespace loomcrest
