#pragma once

#include <optional>
#include <string>
#include <string_view>

// The rules of sitemaps.org 0.9 for the values of one entry. Each check returns the problem
// as the user reads it, or nothing when the value is fine.
namespace loomcrest {

// The folder a site's sitemap speaks for: the site URL without query or fragment, cut back
// to the last "/" of its path ("http://h/" for "http://h").
std::string siteFolderUrl(std::string_view siteUrl);

// An address must be absolute, shorter than 2,048 characters, percent-encoded, on the site's
// host and under its folder. An empty `folderUrl` skips the last two checks.
std::optional<std::string> locationProblem(std::string_view url, std::string_view folderUrl);
// A W3C date: YYYY, YYYY-MM, YYYY-MM-DD, optionally with a time and a zone designator.
std::optional<std::string> dateProblem(std::string_view date);
std::optional<std::string> changeFrequencyProblem(std::string_view value);
std::optional<std::string> priorityProblem(std::string_view value);

// `count` with a "," between groups of three digits, as the messages write numbers.
std::string groupedDigits(size_t count);

}  // namespace loomcrest
