#include "platform/Text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <climits>
#include <cstdint>
#include <cstring>

namespace loomcrest {

namespace {

// The one place where case is folded: ASCII letters only, whatever the locale, as URLs and
// UTF-8 text need (a byte of a multi-byte character is never a letter of its own).
char foldedCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool sameIgnoringCase(char a, char b) {
    return foldedCase(a) == foldedCase(b);
}

}  // namespace

bool isValidUtf8(std::string_view text) {
    size_t i = 0;
    const size_t size = text.size();
    while (i < size) {
        // Plain ASCII, the bulk of most texts, eight bytes at a time.
        if (i + sizeof(uint64_t) <= size) {
            uint64_t eight = 0;
            std::memcpy(&eight, text.data() + i, sizeof(eight));
            if ((eight & 0x8080808080808080ULL) == 0) {
                i += sizeof(eight);
                continue;
            }
        }
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
    if (needle.empty() || needle.size() > text.size()) {
        return false;
    }
    // The bytes that fold to the needle's first byte: a letter's two cases, or the byte
    // itself; memchr finds them quickly.
    const char first = foldedCase(needle.front());
    const bool isLetter = first >= 'a' && first <= 'z';
    const std::array<char, 2> firsts{first, static_cast<char>(first - 'a' + 'A')};
    const size_t firstCount = isLetter ? 2 : 1;
    const size_t lastStart = text.size() - needle.size();
    std::array<size_t, 2> next{};
    const auto findFrom = [&](char c, size_t from) {
        const void* found =
            from > lastStart ? nullptr : std::memchr(text.data() + from, c, lastStart - from + 1);
        return found == nullptr
                   ? std::string_view::npos
                   : static_cast<size_t>(static_cast<const char*>(found) - text.data());
    };
    for (size_t k = 0; k < firstCount; ++k) {
        next[k] = findFrom(firsts[k], 0);
    }
    while (true) {
        const size_t at = firstCount == 1 ? next[0] : std::min(next[0], next[1]);
        if (at == std::string_view::npos) {
            return false;
        }
        if (equalsIgnoringCase(text.substr(at, needle.size()), needle)) {
            return true;
        }
        for (size_t k = 0; k < firstCount; ++k) {
            if (next[k] == at) {
                next[k] = findFrom(firsts[k], at + 1);
            }
        }
    }
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
