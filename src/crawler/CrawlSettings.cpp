#include "crawler/CrawlSettings.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "platform/Http.h"

namespace loomcrest {

namespace {

bool isControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F;
}

// The token characters a header name may use.
bool isTokenCharacter(char c) {
    static constexpr std::string_view kSymbols = "!#$%&'*+-.^_`|~";
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
           kSymbols.find(c) != std::string_view::npos;
}

// "Name: value": a token, a colon, blanks, then a value with something visible in it and
// no control character but the tab.
bool isHeaderLine(std::string_view line) {
    const size_t colon = line.find(':');
    if (colon == 0 || colon == std::string_view::npos ||
        !std::all_of(line.begin(), line.begin() + static_cast<long>(colon), isTokenCharacter)) {
        return false;
    }
    const std::string_view value = line.substr(colon + 1);
    const bool visible =
        std::any_of(value.begin(), value.end(), [](char c) { return c != ' ' && c != '\t'; });
    return visible && std::none_of(value.begin(), value.end(),
                                   [](char c) { return c != '\t' && isControl(c); });
}

}  // namespace

std::string CrawlSettings::defaultUserAgent() {
    return std::string(http::defaultUserAgent());
}

std::optional<std::string> CrawlSettings::problem() const {
    if (connections_ < kMinConnections || connections_ > kMaxConnections) {
        return std::string(kConnectionsProblem);
    }
    if (!(requestsPerSecond_ >= 0 && requestsPerSecond_ <= kMaxRequestsPerSecond)) {
        return std::string(kRateProblem);
    }
    if (userAgent_.empty() || std::any_of(userAgent_.begin(), userAgent_.end(), isControl)) {
        return std::string(kUserAgentProblem);
    }
    for (const std::string& header : extraHeaders_) {
        if (!isHeaderLine(header)) {
            return std::string(kHeaderProblemStart) + header + std::string(kHeaderProblemEnd);
        }
    }
    return std::nullopt;
}

std::optional<int> connectionsFromText(std::string_view text) {
    int value = 0;
    const char* end = text.data() + text.size();
    if (text.empty() ||
        !std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        return std::nullopt;
    }
    const auto [stop, status] = std::from_chars(text.data(), end, value);
    if (status != std::errc() || stop != end) {
        return std::nullopt;  // too large for an int
    }
    return value;
}

std::optional<double> rateFromText(std::string_view text) {
    const auto digits =
        std::count_if(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    const auto points = std::count(text.begin(), text.end(), '.');
    if (digits == 0 || points > 1 || digits + points != static_cast<long>(text.size())) {
        return std::nullopt;
    }
    double value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, status] = std::from_chars(text.data(), end, value, std::chars_format::fixed);
    if (status != std::errc() || stop != end) {
        return std::nullopt;
    }
    return value;
}

std::optional<bool> switchFromText(std::string_view text) {
    if (text == "on") {
        return true;
    }
    if (text == "off") {
        return false;
    }
    return std::nullopt;
}

std::string rateText(double requestsPerSecond) {
    std::array<char, 32> digits{};
    const auto written =
        std::to_chars(digits.data(), digits.data() + digits.size(), requestsPerSecond);
    return std::string(digits.data(), written.ptr);
}

}  // namespace loomcrest
