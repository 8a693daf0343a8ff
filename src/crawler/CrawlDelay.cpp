#include "crawler/CrawlDelay.h"

#include <algorithm>
#include <cmath>

#include "crawler/CrawlSettings.h"
#include "platform/Text.h"

namespace loomcrest {

namespace {

std::string_view withoutBlanks(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
        text.remove_prefix(1);
    }
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r')) {
        text.remove_suffix(1);
    }
    return text;
}

}  // namespace

std::optional<double> robotsCrawlDelay(std::string_view robotsText) {
    constexpr std::string_view kField = "crawl-delay:";
    std::optional<double> longest;
    for (const std::string& line : split(robotsText, '\n')) {
        if (line.size() < kField.size() ||
            !equalsIgnoringCase(line.substr(0, kField.size()), kField)) {
            continue;
        }
        const auto seconds =
            rateFromText(withoutBlanks(std::string_view(line).substr(kField.size())));
        if (seconds && *seconds > 0 && (!longest || *seconds > *longest)) {
            longest = seconds;
        }
    }
    return longest;
}

std::string crawlDelayAdvice(double seconds) {
    // Rounded down to thousandths, so that the rate never asks for more than the delay allows.
    constexpr double kSmallestRate = 0.001;
    const double rate = std::max(kSmallestRate, std::floor(1000.0 / seconds) / 1000.0);
    return "robots.txt asks for " + rateText(seconds) + (seconds == 1 ? " second" : " seconds") +
           " between requests (Crawl-delay); the scan does not wait for it. A rate of " +
           rateText(rate) + (rate == 1 ? " request" : " requests") + " a second follows it.";
}

}  // namespace loomcrest
