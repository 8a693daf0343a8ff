#pragma once

#include <optional>
#include <string>
#include <string_view>

// A robots.txt may ask crawlers to wait between requests ("Crawl-delay: 10"). The scan
// does not obey it (it reads nothing but Disallow lines); the user is told instead and
// may set a rate that follows it.
namespace loomcrest {

// The longest delay, in seconds, of the file's "Crawl-delay:" lines (any letter case, any
// User-agent group); nothing when no line holds a positive number.
std::optional<double> robotsCrawlDelay(std::string_view robotsText);

// What the user is told about a delay.
std::string crawlDelayAdvice(double seconds);

}  // namespace loomcrest
