#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// What every target does with libFuzzer's bytes: take them as text, or as lines.
namespace loomcrest::fuzz {

inline std::string_view asText(const uint8_t* data, size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

inline std::vector<std::string_view> lines(std::string_view text) {
    std::vector<std::string_view> pieces;
    while (!text.empty()) {
        const size_t end = text.find('\n');
        pieces.push_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return pieces;
}

}  // namespace loomcrest::fuzz
