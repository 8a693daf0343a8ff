#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace loomcrest {

bool isValidUtf8(std::string_view text);

// The position of `item` in `items`, or nothing.
std::optional<size_t> indexOf(std::span<const std::string_view> items, std::string_view item);

// Every occurrence of `from`, left to right and not overlapping, replaced by `to`.
std::string replaceAll(std::string_view text, std::string_view from, std::string_view to);

// Case is folded one byte at a time, ASCII letters only, whatever the locale.
std::string lowerCase(std::string_view text);
bool equalsIgnoringCase(std::string_view a, std::string_view b);
// Plain substring search that ignores case. An empty needle is never found.
bool containsIgnoringCase(std::string_view text, std::string_view needle);

// Splits at every occurrence of `separator`; n separators give n + 1 pieces.
std::vector<std::string> split(std::string_view text, char separator);

// The whole number a text starts with, as a lenient reader of counts sees it: leading
// blanks skipped, an optional sign, digits up to the first non-digit, clamped to 32 bits.
// Text without leading digits reads as 0.
int leadingIntegerValue(std::string_view text);

// `text` without the line-break characters (line feed, vertical tab, form feed, carriage
// return, NEL, line and paragraph separators) at either end.
std::string trimLineBreaks(std::string_view text);

}  // namespace loomcrest
