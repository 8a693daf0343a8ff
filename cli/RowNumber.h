#pragma once

#include <charconv>
#include <optional>
#include <string_view>

namespace loomcrest::cli {

// A row or line number as the user types it: digits only, counted from 1.
inline std::optional<size_t> rowNumber(std::string_view text) {
    size_t row = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), row);
    if (error != std::errc() || end != text.data() + text.size() || row == 0) {
        return std::nullopt;
    }
    return row;
}

}  // namespace loomcrest::cli
