#include "crawler/CrawlSettingsFile.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "platform/FileSystem.h"
#include "platform/Json.h"

namespace loomcrest {

namespace {

std::string typeProblem(std::string_view name, std::string_view expected) {
    return "\"" + std::string(name) + "\" must be " + std::string(expected);
}

// Applies one member to `settings`; the reason when its value has the wrong type.
std::optional<std::string> applyMember(CrawlSettings& settings, const std::string& name,
                                       const json::Value& value) {
    if (name == "connections") {
        const auto count = value.integer();
        if (!count) {
            return typeProblem(name, "a whole number");
        }
        // Out of range for an int is out of range for the setting too.
        settings.setConnections(*count > CrawlSettings::kMaxConnections
                                    ? CrawlSettings::kMaxConnections + 1
                                    : static_cast<int>(std::max<int64_t>(*count, 0)));
    } else if (name == "requestsPerSecond") {
        if (!value.number()) {
            return typeProblem(name, "a number");
        }
        settings.setRequestsPerSecond(*value.number());
    } else if (name == "userAgent") {
        if (value.string() == nullptr) {
            return typeProblem(name, "a text");
        }
        settings.setUserAgent(*value.string());
    } else if (name == "fetchOnce" || name == "useNetrc") {
        if (!value.boolean()) {
            return typeProblem(name, "true or false");
        }
        name == "fetchOnce" ? settings.setFetchOnce(*value.boolean())
                            : settings.setUseNetrc(*value.boolean());
    } else if (name == "extraHeaders") {
        const json::Array* list = value.array();
        if (list == nullptr) {
            return typeProblem(name, "a list of texts");
        }
        std::vector<std::string> headers;
        for (const json::Value& header : *list) {
            if (header.string() == nullptr) {
                return typeProblem(name, "a list of texts");
            }
            headers.push_back(*header.string());
        }
        settings.setExtraHeaders(std::move(headers));
    } else {
        return "unknown setting \"" + name + "\"";
    }
    return std::nullopt;
}

}  // namespace

std::string crawlSettingsPath(std::string_view siteFolder) {
    return std::string(siteFolder) + "/" + std::string(kCrawlSettingsFile);
}

CrawlSettingsRead crawlSettingsFromText(std::string_view text) {
    CrawlSettingsRead read;
    const json::ParseResult parsed = json::parse(text);
    if (!parsed.value) {
        read.problem = parsed.error.describe();
        return read;
    }
    const json::Object* members = parsed.value->object();
    if (members == nullptr) {
        read.problem = "the settings must be a JSON object";
        return read;
    }
    CrawlSettings settings;
    for (const auto& [name, value] : *members) {
        if (auto problem = applyMember(settings, name, value)) {
            read.problem = std::move(problem);
            return read;
        }
    }
    if (auto problem = settings.problem()) {
        read.problem = std::move(problem);
        return read;
    }
    read.settings = std::move(settings);
    return read;
}

CrawlSettingsRead readCrawlSettings(std::string_view siteFolder) {
    std::ifstream in(crawlSettingsPath(siteFolder), std::ios::binary);
    if (!in) {
        return {};  // missing or unreadable: the defaults, and nothing to tell
    }
    const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (in.bad()) {
        return {};
    }
    return crawlSettingsFromText(text);
}

std::string crawlSettingsText(const CrawlSettings& settings) {
    json::Value file = json::Object{};
    file.set("connections", settings.connections());
    file.set("requestsPerSecond", settings.requestsPerSecond());
    if (settings.userAgent() != CrawlSettings::defaultUserAgent()) {
        file.set("userAgent", settings.userAgent());
    }
    file.set("fetchOnce", settings.fetchOnce());
    json::Array headers(settings.extraHeaders().begin(), settings.extraHeaders().end());
    file.set("extraHeaders", std::move(headers));
    file.set("useNetrc", settings.useNetrc());
    return json::write(file, json::Layout::Indented) + "\n";
}

WriteResult writeCrawlSettings(std::string_view siteFolder, const CrawlSettings& settings) {
    return writeFileAtomically(crawlSettingsPath(siteFolder), crawlSettingsText(settings));
}

Alert unreadableCrawlSettingsAlert(std::string_view siteFolder, std::string_view problem) {
    Alert alert;
    alert.kind = AlertKind::Information;
    alert.title = "The Crawl Settings Could Not Be Read";
    alert.message = crawlSettingsPath(siteFolder) + ": " + std::string(problem) +
                    ". The default settings are used.";
    return alert;
}

Alert refusedCrawlSettingsAlert(std::string_view problem) {
    return Alert::refusal("Cannot Use These Crawl Settings", std::string(problem));
}

Alert unwritableCrawlSettingsAlert(const WriteResult& failure) {
    return Alert::refusal("The Crawl Settings Could Not Be Saved", failure.message());
}

}  // namespace loomcrest
