#include "editors/LayoutSearch.h"

#include <charconv>
#include <limits>

#include "platform/LargeText.h"
#include "sitemap/LayoutMarkup.h"

namespace loomcrest::layoutsearch {

namespace {

constexpr std::string_view kMarker = layoutmarkup::kLinkIdMarker;
constexpr std::string_view kMarkerEnd = layoutmarkup::kLinkIdMarkerEnd;
constexpr std::string_view kDivStart = "<div ";
constexpr std::string_view kDivEnd = "</div>";

struct Line {
    size_t begin = 0;
    size_t end = 0;
};

Line lineAround(std::string_view text, size_t at) {
    const size_t feedBefore = text.rfind('\n', at);
    const size_t begin = feedBefore == std::string_view::npos ? 0 : feedBefore + 1;
    const size_t feedAfter = text.find('\n', at);
    return {begin, feedAfter == std::string_view::npos ? text.size() : feedAfter};
}

// The number written at `at` exactly as std::to_string writes it ("-" only for negative
// numbers, no leading zeros), followed by "---".
std::optional<int64_t> markerNumber(std::string_view text, size_t at) {
    const size_t end = text.find(kMarkerEnd, at);
    if (end == std::string_view::npos || end == at) {
        return std::nullopt;
    }
    const std::string_view written = text.substr(at, end - at);
    int64_t value = 0;
    const auto [stop, error] =
        std::from_chars(written.data(), written.data() + written.size(), value);
    if (error != std::errc() || stop != written.data() + written.size() ||
        written.starts_with('+') || std::to_string(value) != written) {
        return std::nullopt;
    }
    return value;
}

}  // namespace

bool keepsToOneLine(std::string_view text) {
    return text.find_first_of("\n\\|([^$") == std::string_view::npos;
}

std::optional<MatchSpan> firstMatchOnLinesHolding(std::string_view html, const Regex& pattern,
                                                  std::string_view tail) {
    size_t searchedTo = 0;
    for (size_t at = html.find(tail); at != std::string_view::npos; at = html.find(tail, at + 1)) {
        if (at < searchedTo) {
            continue;
        }
        const Line line = lineAround(html, at);
        searchedTo = line.end;
        if (const auto found = pattern.find(html.substr(line.begin, line.end - line.begin))) {
            return MatchSpan{line.begin + found->begin, line.begin + found->end};
        }
    }
    return std::nullopt;
}

std::optional<NumberedLine> firstLineNumberedBetween(std::string_view html, int64_t from,
                                                     int64_t to) {
    std::optional<NumberedLine> best;
    std::optional<Line> bestLine;
    Line line;
    size_t firstDiv = std::string_view::npos;  // the first "<div " of `line`
    size_t lastDivEnd = 0;                     // where its last "</div>" starts
    for (size_t at = html.find(kMarker); at != std::string_view::npos;
         at = html.find(kMarker, at + 1)) {
        const auto number = markerNumber(html, at + kMarker.size());
        if (!number || *number < from || *number > to || (best && *number >= best->number)) {
            continue;
        }
        if (at >= line.end || at < line.begin) {
            line = lineAround(html, at);
            const std::string_view text = html.substr(line.begin, line.end - line.begin);
            const size_t div = text.find(kDivStart);
            const size_t divEnd = text.rfind(kDivEnd);
            firstDiv = div == std::string_view::npos ? div : line.begin + div;
            lastDivEnd = divEnd == std::string_view::npos ? 0 : line.begin + divEnd;
        }
        // "<div .*" before the marker and ".*</div>" after it, on the marker's line.
        const size_t markerEnd = html.find(kMarkerEnd, at + kMarker.size()) + kMarkerEnd.size();
        if (firstDiv != std::string_view::npos && firstDiv + kDivStart.size() <= at &&
            markerEnd <= lastDivEnd) {
            best = NumberedLine{*number, {}};
            bestLine = line;
        }
    }
    if (!best) {
        return std::nullopt;
    }
    const Regex pattern("<div .*---LINKID:" + std::to_string(best->number) + "---.*</div>");
    const std::string_view text = html.substr(bestLine->begin, bestLine->end - bestLine->begin);
    const auto found = pattern.find(text);
    if (!found) {
        return std::nullopt;
    }
    best->span = {bestLine->begin + found->begin, bestLine->begin + found->end};
    return best;
}

Replaced replaceInPlace(std::string& text, std::string_view from, std::string_view to) {
    Replaced replaced;
    const size_t first = from.empty() ? std::string::npos : text.find(from);
    if (first == std::string::npos) {
        return replaced;
    }
    replaced = {1, first, first};
    if (text.find(from, first + from.size()) == std::string::npos) {
        text.replace(first, from.size(), to);
        return replaced;
    }
    std::string result;
    reserveLargeText(result, text.size());
    replaced.count = 0;
    size_t start = 0;
    for (size_t found = first; found != std::string::npos; found = text.find(from, start)) {
        result.append(text, start, found - start).append(to);
        start = found + from.size();
        replaced.last = found;
        ++replaced.count;
    }
    result.append(text, start);
    text.swap(result);
    return replaced;
}

}  // namespace loomcrest::layoutsearch
