#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace loomcrest {

namespace http {
class Session;
}

// How long the HEAD request for a page's date waits for its answer.
inline constexpr std::chrono::seconds kLastModifiedTimeout{10};

// The date for a page's <lastmod>: its Last-Modified header, asked for with a HEAD request
// of 10 seconds, as "YYYY-MM-dd" in the local time zone; empty when there is no such field
// or it cannot be read.
std::string lastModifiedDate(std::string_view url, const http::Session* session = nullptr);

// "YYYY-MM-dd" with a week-based year: weeks start on Sunday and the week holding 1 January
// is week 1 of the new year, so the last days of December may carry the next year.
std::string weekYearDate(std::chrono::system_clock::time_point when);

}  // namespace loomcrest
