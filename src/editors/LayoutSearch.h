#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Regex.h"

// Searches over a whole layout text that look only at the few lines that can match, so that
// each costs one pass over the text however large the layout is.
namespace loomcrest::layoutsearch {

// Whether a pattern built around `text` can match only within one line and only where the
// pattern's literal tail stands: `text` holds no line feed and none of the characters that
// could make a pattern reach across lines or match without its tail (\ | ( [ ^ $).
bool keepsToOneLine(std::string_view text);

// The first match of `pattern` in `html`, searching only the lines that hold `tail`: the caller
// guarantees that every match lies on one line and contains `tail`.
std::optional<MatchSpan> firstMatchOnLinesHolding(std::string_view html, const Regex& pattern,
                                                  std::string_view tail);

// The line that, after a page title numbered `number` was deleted, follows it: the first match
// of "<div .*---LINKID:N---.*</div>" for the smallest N from `from` to `to` that has one.
struct NumberedLine {
    int64_t number = 0;
    MatchSpan span;
};
std::optional<NumberedLine> firstLineNumberedBetween(std::string_view html, int64_t from,
                                                     int64_t to);

// Every occurrence of `from` in `text` replaced by `to`. A single occurrence, the usual case,
// is replaced where it stands.
struct Replaced {
    size_t count = 0;
    size_t first = 0;  // where the first and the last occurrence stood before
    size_t last = 0;
};
Replaced replaceInPlace(std::string& text, std::string_view from, std::string_view to);

}  // namespace loomcrest::layoutsearch
