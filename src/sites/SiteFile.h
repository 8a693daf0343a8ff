#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/FileSystem.h"

// The site file: six elements, one a line, no final line feed, e.g.
//   <siteName>Example</siteName>
//   <siteURL>http://example.com/</siteURL>
//   <ignoreRobotFile>NO</ignoreRobotFile>
//   <pagesFound>0</pagesFound>
//   <totalLinks>0</totalLinks>
//   <pagesUsed>0</pagesUsed>
// A new file has the first five; the last is added when the site is first selected.
// Fields are read with the pattern "<tag>(.*)</tag>", so a value never spans lines and the
// first match in the file wins.
namespace loomcrest {

enum class SiteField { SiteName, SiteURL, IgnoreRobotFile, PagesFound, TotalLinks, PagesUsed };

std::string_view fieldTagName(SiteField field);
// "<tag>" + value + "</tag>", the value written as given.
std::string siteFileElement(SiteField field, std::string_view value);
// Capture 1 of the field's pattern: the value, or nothing when the element is absent.
std::optional<std::string> readSiteField(std::string_view text, SiteField field);
// Capture 0 of the field's pattern: the whole element as it stands in the text.
std::optional<std::string> wholeSiteElement(std::string_view text, SiteField field);

// Replaces every occurrence of the field's whole element, taken literally, by an element
// holding `value`. An absent element leaves the text as it is.
std::string replaceSiteElement(std::string_view text, SiteField field, std::string_view value);

// The text of a new site: name, URL, robots flag "NO", pagesFound and totalLinks 0.
std::string newSiteFileText(std::string_view name, std::string_view url);
// The text with the three statistics replaced, or unchanged when one of them is absent.
std::string siteFileTextWithStatistics(std::string_view text, int totalLinks, int pagesFound,
                                       int pagesUsed);
// Literal replacement of the whole "NO" (to ignore) or "YES" (to obey) element; any other
// value is left as it is.
std::string siteFileTextWithRobotsFlag(std::string_view text, bool ignoreRobots);
// The statistics elements of the text (pagesFound, totalLinks, pagesUsed), one a line, as
// they stand; an absent one is left out.
std::string siteStatisticsText(std::string_view text);
// The text with each statistics element that `statistics` holds in place of its own.
std::string siteFileTextWithStoredStatistics(std::string_view text, std::string_view statistics);
// Appends, each on a new line, the statistics elements the text lacks (searched ignoring case).
std::string completedSiteFileText(std::string_view text);

// A statistic as the site details show it: as stored when it reads as a positive
// number, otherwise "0".
std::string countForDisplay(const std::optional<std::string>& stored);

// The site file of `name` as text, empty when it cannot be read.
std::string readSiteFile(std::string_view name);

// File operations on the site file of `name`. A file that cannot be read is never written.
WriteResult createSiteFile(std::string_view name, std::string_view url);
// A file that cannot be read, or lacks a statistic, is left as it is: no failure.
WriteResult writeSiteStatistics(std::string_view name, int totalLinks, int pagesFound,
                                int pagesUsed);
// Completes the file on disk when it lacks a statistic, and returns the completed text.
std::string completeSiteFile(std::string_view name);

}  // namespace loomcrest
