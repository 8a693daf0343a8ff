#include "sitemap/SitemapValues.h"

#include <algorithm>
#include <array>

#include "platform/Regex.h"
#include "platform/Text.h"
#include "sitemap/SitemapLimits.h"

namespace loomcrest {

namespace {

constexpr std::array<std::string_view, 7> kChangeFrequencies = {
    "always", "hourly", "daily", "weekly", "monthly", "yearly", "never"};

std::string quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

// Scheme and authority, lower case: "http://h:8080".
std::string originOf(std::string_view url) {
    const size_t schemeEnd = url.find("://");
    if (schemeEnd == std::string_view::npos) {
        return {};
    }
    return lowerCase(url.substr(0, url.find_first_of("/?#", schemeEnd + 3)));
}

// Outside the characters a URI may hold as they stand (RFC 3986).
bool needsPercentEncoding(unsigned char c) {
    static constexpr std::string_view kNotAllowed = "\"<>\\^`{|}";
    return c <= 0x20 || c >= 0x7f || kNotAllowed.find(static_cast<char>(c)) != kNotAllowed.npos;
}

bool isAbsoluteWebUrl(std::string_view url) {
    const std::string origin = originOf(url);
    return (origin.starts_with("http://") || origin.starts_with("https://")) &&
           origin.find("://") + 3 < origin.size();
}

int number(const std::optional<std::string>& digits) {
    return digits && !digits->empty() ? leadingIntegerValue(*digits) : 0;
}

int daysIn(int year, int month) {
    static constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : kDays[static_cast<size_t>(month - 1)];
}

// The fields the pattern let through are digits of fixed width; only their ranges are left.
bool fieldsInRange(const RegexMatch& match) {
    const int year = number(match.capture(1));
    const auto inRange = [&](size_t group, int low, int high) {
        const auto field = match.capture(group);
        return !field || field->empty() || (number(field) >= low && number(field) <= high);
    };
    if (!inRange(2, 1, 12) || !inRange(4, 0, 23) || !inRange(5, 0, 59) || !inRange(6, 0, 59) ||
        !inRange(8, 0, 23) || !inRange(9, 0, 59)) {
        return false;
    }
    const auto day = match.capture(3);
    return !day || day->empty() || inRange(3, 1, daysIn(year, number(match.capture(2))));
}

}  // namespace

std::string siteFolderUrl(std::string_view siteUrl) {
    if (siteUrl.empty()) {
        return {};
    }
    const size_t schemeEnd = siteUrl.find("://");
    const size_t pathStart = schemeEnd == std::string_view::npos ? 0 : schemeEnd + 3;
    const std::string_view beforeQuery =
        siteUrl.substr(0, std::min(siteUrl.find_first_of("?#", pathStart), siteUrl.size()));
    const size_t lastSlash = beforeQuery.rfind('/');
    if (lastSlash == std::string_view::npos || lastSlash < pathStart) {
        return std::string(beforeQuery) + "/";
    }
    return std::string(beforeQuery.substr(0, lastSlash + 1));
}

std::optional<std::string> locationProblem(std::string_view url, std::string_view folderUrl) {
    if (url.empty()) {
        return "The URL is empty";
    }
    if (url.size() >= kUrlLengthLimit) {
        return "The URL is " + groupedDigits(url.size()) +
               " characters long; it must be shorter than 2,048";
    }
    if (std::any_of(url.begin(), url.end(),
                    [](char c) { return needsPercentEncoding(static_cast<unsigned char>(c)); })) {
        return "The URL " + quoted(url) + " holds characters that must be percent-encoded";
    }
    if (!isAbsoluteWebUrl(url)) {
        return "The URL " + quoted(url) + " is not an absolute http or https URL";
    }
    if (folderUrl.empty()) {
        return std::nullopt;
    }
    const std::string origin = originOf(folderUrl);
    if (originOf(url) != origin) {
        return "The URL " + quoted(url) + " is not on the site's host (" + origin + ")";
    }
    // "http://h" names the same page as "http://h/".
    std::string path(url.substr(origin.size()));
    if (!path.starts_with('/')) {
        path.insert(0, "/");
    }
    if (!path.starts_with(folderUrl.substr(origin.size()))) {
        return "The URL " + quoted(url) + " is not under the site's folder (" +
               std::string(folderUrl) + ")";
    }
    return std::nullopt;
}

std::optional<std::string> dateProblem(std::string_view date) {
    static const Regex w3cDate(
        R"(^(\d{4})(?:-(\d{2})(?:-(\d{2})(?:T(\d{2}):(\d{2})(?::(\d{2})(?:\.\d+)?)?)"
        R"((Z|[+-](\d{2}):(\d{2})))?)?)?\z)");
    const auto match = w3cDate.firstMatch(date);
    if (match && fieldsInRange(*match)) {
        return std::nullopt;
    }
    return "The last-modified date " + quoted(date) +
           " is not a W3C date (such as 2024-05-17 or 2024-05-17T09:30:00+01:00)";
}

std::optional<std::string> changeFrequencyProblem(std::string_view value) {
    if (std::find(kChangeFrequencies.begin(), kChangeFrequencies.end(), value) !=
        kChangeFrequencies.end()) {
        return std::nullopt;
    }
    return "The change frequency " + quoted(value) +
           " is not one of always, hourly, daily, weekly, monthly, yearly, never";
}

std::optional<std::string> priorityProblem(std::string_view value) {
    static const Regex zeroToOne(R"(^(?:0(?:\.\d*)?|1(?:\.0*)?|\.\d+)\z)");
    if (zeroToOne.firstMatch(value)) {
        return std::nullopt;
    }
    return "The priority " + quoted(value) + " is not a number from 0.0 to 1.0";
}

std::string groupedDigits(size_t count) {
    std::string digits = std::to_string(count);
    for (size_t i = digits.size(); i > 3; i -= 3) {
        digits.insert(i - 3, ",");
    }
    return digits;
}

}  // namespace loomcrest
