#include "editors/XmlEntry.h"

#include <array>
#include <utility>

#include "platform/Regex.h"
#include "platform/Text.h"

namespace loomcrest::xmlentry {

namespace {

const Regex& elementPattern(std::string_view tag) {
    static const std::array<std::pair<std::string_view, Regex>, 4> patterns = {{
        {"loc", Regex("<loc>(.*)</loc>")},
        {"lastmod", Regex("<lastmod>(.*)</lastmod>")},
        {"changefreq", Regex("<changefreq>(.*)</changefreq>")},
        {"priority", Regex("<priority>(.*)</priority>")},
    }};
    for (const auto& [name, pattern] : patterns) {
        if (name == tag) {
            return pattern;
        }
    }
    static const Regex matchesNothing("(*FAIL)");
    return matchesNothing;
}

std::optional<std::string> group(std::string_view entry, std::string_view tag, size_t index) {
    const auto match = elementPattern(tag).firstMatch(entry);
    return match ? match->capture(index) : std::nullopt;
}

int integerAt(std::string_view text, size_t from, size_t to) {
    if (from >= text.size() || to <= from) {
        return 0;
    }
    return leadingIntegerValue(text.substr(from, to - from));
}

}  // namespace

std::optional<std::string> value(std::string_view entry, std::string_view tag) {
    return group(entry, tag, 1);
}

std::optional<std::string> element(std::string_view entry, std::string_view tag) {
    return group(entry, tag, 0);
}

std::string withElement(std::string_view entry, std::string_view tag, std::string_view value) {
    const auto old = element(entry, tag);
    if (!old) {
        return std::string(entry);
    }
    const std::string name(tag);
    return replaceAll(entry, *old, "\n\t\t<" + name + ">" + std::string(value) + "</" + name + ">");
}

std::optional<std::string> lastUpdatedProblem(std::string_view value, std::string_view today) {
    static const Regex datePattern(R"((\d{4}\-\d{2}\-\d{2}))");
    if (value.empty()) {
        return "The Last Updated field cannot be left blank";
    }
    if (!datePattern.firstMatch(value)) {
        return "The Last Updated date format must be yyyy-mm-dd (" + std::string(today) + ")";
    }
    const int month = integerAt(value, 5, value.size() - 3);
    const int day = integerAt(value, 6, value.size());
    // Both checks let 01 fail as well. The numbers are compared as read, never
    // computed with: a reading clamped at the limits of int must not overflow.
    if (month < 2 || month > 12) {
        return "The month must be a number between 01 and 12";
    }
    if (day < 2 || day > 31) {
        return "The day must be a number between 01 and 31";
    }
    return std::nullopt;
}

}  // namespace loomcrest::xmlentry
