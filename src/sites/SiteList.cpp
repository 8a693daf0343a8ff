#include "sites/SiteList.h"

#include <array>

#include "platform/FileSystem.h"
#include "platform/Regex.h"
#include "platform/Text.h"
#include "sites/DataPaths.h"

namespace loomcrest {

namespace {

constexpr std::array<std::string_view, 6> kOldSitemapNames = {"sitemap.html",  "sitemap2.html",
                                                              "sitemap3.html", "sitemap4.html",
                                                              "sitemap5.html", "sitemap6.html"};

std::string wholeMatchOrEmpty(const Regex& pattern, std::string_view text) {
    const auto match = pattern.firstMatch(text);
    return match ? match->whole() : std::string();
}

void convertOldSiteFile(const std::string& oldPath) {
    static const Regex namePattern("<siteName>.*</siteName>");
    static const Regex urlPattern("<siteURL>.*</siteURL>");

    const std::string newPath = replaceAll(oldPath, ".vrlmp", ".vrLMP");
    const auto oldText = readTextFile(oldPath);
    if (!oldText) {
        // Unreadable: leave it where it is rather than replace it by an empty site.
        return;
    }
    // The old robots setting and statistics are dropped on purpose: the next scan
    // regenerates everything.
    const std::string newText = wholeMatchOrEmpty(namePattern, *oldText) + "\n" +
                                wholeMatchOrEmpty(urlPattern, *oldText) + "\n" +
                                "<ignoreRobotFile>NO</ignoreRobotFile>" +
                                "\n<pagesFound>0</pagesFound>\n<totalLinks>0</totalLinks>";
    if (!writeFileAtomically(newPath, newText)) {
        return;
    }
    (void)removeFile(oldPath);

    const std::string folder = parentFolderOf(oldPath);
    for (const std::string_view oldSitemap : kOldSitemapNames) {
        const std::string sitemapPath = folder + "/" + std::string(oldSitemap);
        if (pathExists(sitemapPath)) {
            (void)removeFile(sitemapPath);
        }
    }
}

}  // namespace

std::optional<std::string> siteNameFromPath(std::string_view relativePath) {
    constexpr size_t kExtensionLength = std::string_view(".vrLMP").size();
    if (relativePath.size() < kExtensionLength) {
        return std::nullopt;
    }
    const std::string_view stem = relativePath.substr(0, relativePath.size() - kExtensionLength);
    const size_t slash = stem.rfind('/');
    if (slash == std::string_view::npos) {
        return std::nullopt;
    }
    return std::string(stem.substr(0, slash));
}

std::vector<std::string> siteNamesWithExtension(std::string_view extension) {
    std::vector<std::string> names;
    for (const std::string& entry : walkFolder(homeFolderLocation())) {
        if (pathExtension(entry) != extension) {
            continue;
        }
        if (auto name = siteNameFromPath(entry)) {
            names.push_back(std::move(*name));
        }
    }
    return names;
}

bool convertOldSiteFiles() {
    const std::string root = homeFolderLocation();
    std::vector<std::string> oldFiles;
    for (const std::string& entry : walkFolder(root)) {
        if (pathExtension(entry) == "vrlmp") {
            oldFiles.push_back(root + "/" + entry);
        }
    }
    for (const std::string& oldPath : oldFiles) {
        convertOldSiteFile(oldPath);
    }
    return !oldFiles.empty();
}

}  // namespace loomcrest
