#include "platform/Text.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdint>

namespace loomcrest {

namespace {

// The one place where case is folded.
char foldedCase(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

bool sameIgnoringCase(char a, char b) {
    return foldedCase(a) == foldedCase(b);
}

}  // namespace

bool isValidUtf8(std::string_view text) {
    size_t i = 0;
    const size_t size = text.size();
    while (i < size) {
        const auto lead = static_cast<unsigned char>(text[i]);
        size_t length = 0;
        uint32_t codePoint = 0;
        if (lead < 0x80) {
            ++i;
            continue;
        }
        if ((lead & 0xE0) == 0xC0) {
            length = 2;
            codePoint = lead & 0x1F;
        } else if ((lead & 0xF0) == 0xE0) {
            length = 3;
            codePoint = lead & 0x0F;
        } else if ((lead & 0xF8) == 0xF0) {
            length = 4;
            codePoint = lead & 0x07;
        } else {
            return false;
        }
        if (i + length > size) {
            return false;
        }
        for (size_t k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(text[i + k]);
            if ((next & 0xC0) != 0x80) {
                return false;
            }
            codePoint = (codePoint << 6) | (next & 0x3F);
        }
        const bool overlong = (length == 2 && codePoint < 0x80) ||
                              (length == 3 && codePoint < 0x800) ||
                              (length == 4 && codePoint < 0x10000);
        const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
        if (overlong || surrogate || codePoint > 0x10FFFF) {
            return false;
        }
        i += length;
    }
    return true;
}

std::optional<size_t> indexOf(std::span<const std::string_view> items, std::string_view item) {
    const auto found = std::find(items.begin(), items.end(), item);
    return found == items.end() ? std::nullopt
                                : std::optional<size_t>(static_cast<size_t>(found - items.begin()));
}

std::string replaceAll(std::string_view text, std::string_view from, std::string_view to) {
    if (from.empty()) {
        return std::string(text);
    }
    std::string result;
    result.reserve(text.size());
    size_t start = 0;
    for (size_t found = text.find(from); found != std::string_view::npos;
         found = text.find(from, start)) {
        result.append(text.substr(start, found - start));
        result.append(to);
        start = found + from.size();
    }
    result.append(text.substr(start));
    return result;
}

std::string lowerCase(std::string_view text) {
    std::string lower(text.size(), '\0');
    std::transform(text.begin(), text.end(), lower.begin(), foldedCase);
    return lower;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), sameIgnoringCase);
}

bool containsIgnoringCase(std::string_view text, std::string_view needle) {
    const auto it =
        std::search(text.begin(), text.end(), needle.begin(), needle.end(), sameIgnoringCase);
    return !needle.empty() && it != text.end();
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> pieces;
    size_t start = 0;
    for (size_t found = text.find(separator); found != std::string_view::npos;
         found = text.find(separator, start)) {
        pieces.emplace_back(text.substr(start, found - start));
        start = found + 1;
    }
    pieces.emplace_back(text.substr(start));
    return pieces;
}

int leadingIntegerValue(std::string_view text) {
    size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t' || text[i] == '\n')) {
        ++i;
    }
    bool negative = false;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) {
        negative = text[i] == '-';
        ++i;
    }
    int64_t value = 0;
    for (; i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])) != 0; ++i) {
        value = std::min<int64_t>(value * 10 + (text[i] - '0'), int64_t{INT_MAX} + 1);
    }
    if (negative) {
        value = -value;
    }
    return static_cast<int>(std::clamp<int64_t>(value, INT_MIN, INT_MAX));
}

std::string trimLineBreaks(std::string_view text) {
    constexpr std::string_view kMultiByteBreaks[] = {"\xc2\x85", "\xe2\x80\xa8", "\xe2\x80\xa9"};
    const auto isSingleByteBreak = [](char c) { return c >= '\n' && c <= '\r'; };
    bool trimmed = true;
    while (trimmed && !text.empty()) {
        trimmed = false;
        if (isSingleByteBreak(text.front())) {
            text.remove_prefix(1);
            trimmed = true;
        } else if (isSingleByteBreak(text.back())) {
            text.remove_suffix(1);
            trimmed = true;
        }
        for (const std::string_view lineBreak : kMultiByteBreaks) {
            if (text.starts_with(lineBreak)) {
                text.remove_prefix(lineBreak.size());
                trimmed = true;
            }
            if (text.ends_with(lineBreak)) {
                text.remove_suffix(lineBreak.size());
                trimmed = true;
            }
        }
    }
    return std::string(text);
}

}  // namespace loomcrest
