#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "crawler/CrawlSettings.h"
#include "platform/Alerts.h"
#include "platform/FileSystem.h"

// A site's crawl settings live in "crawl.json" in its folder, beside the site file, which
// keeps its own format. Only the crawl settings write that file.
namespace loomcrest {

inline constexpr std::string_view kCrawlSettingsFile = "crawl.json";

std::string crawlSettingsPath(std::string_view siteFolder);

struct CrawlSettingsRead {
    CrawlSettings settings;
    // Why a file that was there could not be used; the settings are then the defaults.
    std::optional<std::string> problem;
};

// A missing or unreadable file gives the defaults without a problem. Members left out keep
// their defaults; an unknown member, a value of the wrong type or a value not allowed make
// the whole file a problem.
CrawlSettingsRead readCrawlSettings(std::string_view siteFolder);

// Writes the settings atomically. The user agent is left out while it is the default, so
// that the default follows the program's version.
WriteResult writeCrawlSettings(std::string_view siteFolder, const CrawlSettings& settings);

// The settings as the file holds them, with a final line feed.
std::string crawlSettingsText(const CrawlSettings& settings);
// Reads the text of a file; `problem` is set when it cannot be used.
CrawlSettingsRead crawlSettingsFromText(std::string_view text);

// What the user is told about a file that could not be used.
Alert unreadableCrawlSettingsAlert(std::string_view siteFolder, std::string_view problem);
// And about one that could not be written: "PATH: reason".
Alert unwritableCrawlSettingsAlert(const WriteResult& failure);
// The refusal of settings that are not allowed, with the message of CrawlSettings::problem.
Alert refusedCrawlSettingsAlert(std::string_view problem);

}  // namespace loomcrest
