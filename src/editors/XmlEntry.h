#pragma once

#include <optional>
#include <string>
#include <string_view>

// One <url> entry of "sitemap.xml" as markup text, read and changed element by element with
// the pattern "<tag>(.*)</tag>" (greedy, within one line).
namespace loomcrest::xmlentry {

// Capture 1: the element's value.
std::optional<std::string> value(std::string_view entry, std::string_view tag);
// Capture 0: the element with its tags.
std::optional<std::string> element(std::string_view entry, std::string_view tag);
// The entry with every copy of the whole element replaced by a line feed, two tabs and the
// element holding `value`; unchanged when the entry lacks the element.
std::string withElement(std::string_view entry, std::string_view tag, std::string_view value);

// Whether the last-modified text may be saved, and the alert when not. The month is read
// from position 5 up to three before the end and the day from position 6 on: only months
// 02 to 09 and 12 can pass.
std::optional<std::string> lastUpdatedProblem(std::string_view value, std::string_view today);

}  // namespace loomcrest::xmlentry
