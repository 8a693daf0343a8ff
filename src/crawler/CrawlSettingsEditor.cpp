#include "crawler/CrawlSettingsEditor.h"

#include "crawler/CrawlSettingsFile.h"
#include "platform/Text.h"

namespace loomcrest {

CrawlSettingsFields fieldsFromSettings(const CrawlSettings& settings) {
    CrawlSettingsFields fields;
    fields.connections = std::to_string(settings.connections());
    fields.requestsPerSecond = rateText(settings.requestsPerSecond());
    fields.userAgent = settings.userAgent();
    fields.fetchOnce = settings.fetchOnce();
    for (const std::string& header : settings.extraHeaders()) {
        fields.extraHeaders.append(header).append("\n");
    }
    fields.useNetrc = settings.useNetrc();
    return fields;
}

std::variant<CrawlSettings, std::string> settingsFromFields(const CrawlSettingsFields& fields) {
    CrawlSettings settings;
    const auto connections = connectionsFromText(fields.connections);
    if (!connections) {
        return std::string(kConnectionsProblem);
    }
    settings.setConnections(*connections);
    const auto rate = rateFromText(fields.requestsPerSecond);
    if (!rate) {
        return std::string(kRateProblem);
    }
    settings.setRequestsPerSecond(*rate);
    settings.setUserAgent(fields.userAgent);
    settings.setFetchOnce(fields.fetchOnce);
    for (std::string& line : split(fields.extraHeaders, '\n')) {
        if (line.find_first_not_of(" \t\r") != std::string::npos) {
            settings.addExtraHeader(std::move(line));
        }
    }
    settings.setUseNetrc(fields.useNetrc);
    if (auto problem = settings.problem()) {
        return *problem;
    }
    return settings;
}

CrawlSettingsFields CrawlSettingsEditor::open(std::string siteFolder) {
    siteFolder_ = std::move(siteFolder);
    const CrawlSettingsRead read = readCrawlSettings(siteFolder_);
    if (read.problem) {
        alerts_.presentAlert(unreadableCrawlSettingsAlert(siteFolder_, *read.problem), {});
    }
    return fieldsFromSettings(read.settings);
}

bool CrawlSettingsEditor::save(const CrawlSettingsFields& fields) {
    const auto settings = settingsFromFields(fields);
    if (const auto* problem = std::get_if<std::string>(&settings)) {
        alerts_.presentAlert(refusedCrawlSettingsAlert(*problem), {});
        return false;
    }
    if (const WriteResult written =
            writeCrawlSettings(siteFolder_, std::get<CrawlSettings>(settings));
        !written) {
        alerts_.presentAlert(unwritableCrawlSettingsAlert(written), {});
        return false;
    }
    return true;
}

}  // namespace loomcrest
