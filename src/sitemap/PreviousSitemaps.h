#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/FileSystem.h"

// The sitemaps of the scan before the last, kept beside the current ones: each of the seven
// sitemap files, "badLinks.txt" and "brokenLinks.tsv" with the suffix ".previous", and the
// statistics the site file held for them in "statistics.previous". A scan that is cut short, fails
// or finds the site down leaves unfinished files; the previous set can then be put back.
namespace loomcrest {

inline constexpr std::string_view kPreviousSuffix = ".previous";
inline constexpr std::string_view kPreviousStatisticsFile = "statistics.previous";

// Whether all seven sitemap files are there and each ends with its closing tag.
bool sitemapsComplete(const std::string& folder);
// Whether a whole previous set is kept: the seven files and the statistics.
bool hasPreviousSitemaps(const std::string& folder);
// The statistics kept with the previous set, as site-file elements; nothing when none.
std::optional<std::string> previousStatistics(const std::string& folder);

// Called before a scan replaces the files. A complete set becomes the previous set, with
// `statistics` (the site file's statistics elements) beside it. An unfinished set is left
// to be replaced, so the previous set stays the last complete one. A failure leaves the
// current files as they were.
WriteResult keepPreviousSitemaps(const std::string& folder, std::string_view statistics);

// Moves the previous set back over the current files; the statistics file goes last, and
// with it the previous set. The site file's statistics are the caller's.
WriteResult putBackPreviousSitemaps(const std::string& folder);

// After a scan that could not write its files: the previous set goes back or, when none is
// kept, the unfinished sitemap files are removed. Either way no cut-off file stays behind.
WriteResult discardUnfinishedSitemaps(const std::string& folder);

}  // namespace loomcrest
