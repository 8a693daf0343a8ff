#include "crawler/RobotsRules.h"

#include <algorithm>

#include "platform/Text.h"

namespace loomcrest {

std::vector<std::string> parseRobotsText(std::string_view text) {
    constexpr std::string_view kDisallow = "Disallow: ";
    std::vector<std::string> values;
    if (text.empty()) {
        return values;
    }
    for (const std::string& line : split(text, '\n')) {
        if (line.starts_with(kDisallow)) {
            values.push_back(line.substr(kDisallow.size()));
        }
    }
    return values;
}

bool anyEntryOccursIn(std::string_view url, const std::vector<std::string>& entries) {
    return firstEntryOccurringIn(url, entries) != nullptr;
}

const std::string* firstEntryOccurringIn(std::string_view url,
                                         const std::vector<std::string>& entries) {
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const std::string& entry) {
        return containsIgnoringCase(url, entry);
    });
    return found == entries.end() ? nullptr : &*found;
}

}  // namespace loomcrest
