#pragma once

#include <string>
#include <variant>

#include "crawler/CrawlSettings.h"
#include "platform/Alerts.h"

namespace loomcrest {

// The crawl settings as the window's sheet shows them: numbers as typed, the extra headers
// one a line.
struct CrawlSettingsFields {
    std::string connections;
    std::string requestsPerSecond;
    std::string userAgent;
    bool fetchOnce = false;
    std::string extraHeaders;
    bool useNetrc = false;

    bool operator==(const CrawlSettingsFields&) const = default;
};

CrawlSettingsFields fieldsFromSettings(const CrawlSettings& settings);
// The settings the fields stand for (blank header lines are skipped), or the message of
// the first field that is not allowed: the same rules and words as the command line's.
std::variant<CrawlSettings, std::string> settingsFromFields(const CrawlSettingsFields& fields);

// The crawl settings sheet of one site: it opens with the site's saved settings and saves
// only settings that are allowed.
class CrawlSettingsEditor {
public:
    explicit CrawlSettingsEditor(AlertPresenter& alerts) : alerts_(alerts) {}

    // The fields of the site's settings; a file that cannot be used is reported and the
    // defaults are shown.
    CrawlSettingsFields open(std::string siteFolder);
    // Writes the settings and returns true; otherwise refuses with an alert and returns
    // false, and the sheet stays open.
    bool save(const CrawlSettingsFields& fields);

private:
    AlertPresenter& alerts_;
    std::string siteFolder_;
};

}  // namespace loomcrest
