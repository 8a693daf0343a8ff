#include "sites/SiteFile.h"

#include <array>

#include "platform/FileSystem.h"
#include "platform/Regex.h"
#include "platform/Text.h"
#include "sites/DataPaths.h"

namespace loomcrest {

namespace {

constexpr std::array<std::string_view, 6> kTagNames = {
    "siteName", "siteURL", "ignoreRobotFile", "pagesFound", "totalLinks", "pagesUsed"};

const Regex& fieldPattern(SiteField field) {
    static const std::array<Regex, 6> patterns = [] {
        auto pattern = [](std::string_view tag) {
            const std::string name(tag);
            return Regex("<" + name + ">(.*)</" + name + ">");
        };
        return std::array<Regex, 6>{pattern(kTagNames[0]), pattern(kTagNames[1]),
                                    pattern(kTagNames[2]), pattern(kTagNames[3]),
                                    pattern(kTagNames[4]), pattern(kTagNames[5])};
    }();
    return patterns[static_cast<size_t>(field)];
}

std::optional<std::string> matchGroup(std::string_view text, SiteField field, size_t group) {
    const auto match = fieldPattern(field).firstMatch(text);
    if (!match) {
        return std::nullopt;
    }
    return match->capture(group);
}

std::string openingTag(SiteField field) {
    return "<" + std::string(fieldTagName(field)) + ">";
}

}  // namespace

std::string_view fieldTagName(SiteField field) {
    return kTagNames[static_cast<size_t>(field)];
}

std::string siteFileElement(SiteField field, std::string_view value) {
    const std::string tag(fieldTagName(field));
    return "<" + tag + ">" + std::string(value) + "</" + tag + ">";
}

std::optional<std::string> readSiteField(std::string_view text, SiteField field) {
    return matchGroup(text, field, 1);
}

std::optional<std::string> wholeSiteElement(std::string_view text, SiteField field) {
    return matchGroup(text, field, 0);
}

std::string replaceSiteElement(std::string_view text, SiteField field, std::string_view value) {
    const auto element = wholeSiteElement(text, field);
    if (!element) {
        return std::string(text);
    }
    return replaceAll(text, *element, siteFileElement(field, value));
}

std::string newSiteFileText(std::string_view name, std::string_view url) {
    return siteFileElement(SiteField::SiteName, name) + "\n" +
           siteFileElement(SiteField::SiteURL, url) + "\n" +
           "<ignoreRobotFile>NO</ignoreRobotFile>\n<pagesFound>0</pagesFound>\n"
           "<totalLinks>0</totalLinks>";
}

std::string siteFileTextWithStatistics(std::string_view text, int totalLinks, int pagesFound,
                                       int pagesUsed) {
    const auto totalLinksElement = wholeSiteElement(text, SiteField::TotalLinks);
    const auto pagesFoundElement = wholeSiteElement(text, SiteField::PagesFound);
    const auto pagesUsedElement = wholeSiteElement(text, SiteField::PagesUsed);
    if (!totalLinksElement || !pagesFoundElement || !pagesUsedElement) {
        return std::string(text);
    }
    std::string result =
        replaceAll(text, *totalLinksElement,
                   siteFileElement(SiteField::TotalLinks, std::to_string(totalLinks)));
    result = replaceAll(result, *pagesFoundElement,
                        siteFileElement(SiteField::PagesFound, std::to_string(pagesFound)));
    return replaceAll(result, *pagesUsedElement,
                      siteFileElement(SiteField::PagesUsed, std::to_string(pagesUsed)));
}

std::string siteFileTextWithRobotsFlag(std::string_view text, bool ignoreRobots) {
    const std::string yes = siteFileElement(SiteField::IgnoreRobotFile, "YES");
    const std::string no = siteFileElement(SiteField::IgnoreRobotFile, "NO");
    return ignoreRobots ? replaceAll(text, no, yes) : replaceAll(text, yes, no);
}

std::string siteStatisticsText(std::string_view text) {
    std::string statistics;
    for (const SiteField field :
         {SiteField::PagesFound, SiteField::TotalLinks, SiteField::PagesUsed}) {
        if (const auto element = wholeSiteElement(text, field)) {
            statistics += (statistics.empty() ? "" : "\n") + *element;
        }
    }
    return statistics;
}

std::string siteFileTextWithStoredStatistics(std::string_view text, std::string_view statistics) {
    std::string result(text);
    for (const SiteField field :
         {SiteField::PagesFound, SiteField::TotalLinks, SiteField::PagesUsed}) {
        if (const auto value = readSiteField(statistics, field)) {
            result = replaceSiteElement(result, field, *value);
        }
    }
    return result;
}

std::string completedSiteFileText(std::string_view text) {
    std::string result(text);
    for (const SiteField field :
         {SiteField::PagesFound, SiteField::TotalLinks, SiteField::PagesUsed}) {
        if (!containsIgnoringCase(result, openingTag(field))) {
            result += "\n" + siteFileElement(field, "0");
        }
    }
    return result;
}

std::string countForDisplay(const std::optional<std::string>& stored) {
    const std::string text = stored.value_or(std::string());
    return leadingIntegerValue(text) > 0 ? text : "0";
}

std::string readSiteFile(std::string_view name) {
    return readTextFile(returnFullFileLocation(name)).value_or(std::string());
}

WriteResult createSiteFile(std::string_view name, std::string_view url) {
    return writeFileAtomically(returnFullFileLocation(name), newSiteFileText(name, url));
}

WriteResult writeSiteStatistics(std::string_view name, int totalLinks, int pagesFound,
                                int pagesUsed) {
    const std::string path = returnFullFileLocation(name);
    const auto text = readTextFile(path);
    if (!text) {
        return {};
    }
    const std::string updated =
        siteFileTextWithStatistics(*text, totalLinks, pagesFound, pagesUsed);
    return updated != *text ? writeFileAtomically(path, updated) : WriteResult();
}

std::string completeSiteFile(std::string_view name) {
    const std::string path = returnFullFileLocation(name);
    const auto text = readTextFile(path);
    std::string completed = completedSiteFileText(text.value_or(std::string()));
    if (text && completed != *text) {
        // Only a convenience: the completed text is shown either way, and the next
        // selection tries again.
        (void)writeFileAtomically(path, completed);
    }
    return completed;
}

}  // namespace loomcrest
