#include <algorithm>

#include "crawler/SiteScanner.h"
#include "platform/Text.h"
#include "platform/Url.h"
#include "sites/PageExtensions.h"

namespace loomcrest {

namespace {

// The length of "scheme://host/", below which "../" never shortens a base.
size_t rootLength(std::string_view url) {
    const size_t schemeEnd = url.find("://");
    if (schemeEnd == std::string_view::npos) {
        return 0;
    }
    const size_t slash = url.find('/', schemeEnd + 3);
    return slash == std::string_view::npos ? url.size() : slash + 1;
}

std::string upOneFolder(std::string base) {
    if (base.ends_with('/')) {
        base.pop_back();
    }
    while (!base.empty() && base.back() != '/') {
        base.pop_back();
    }
    return base;
}

std::string resolveByRules(std::string_view href, const SiteScanner& scanner) {
    if (href == scanner.siteBaseURL) {
        return scanner.siteBaseURL;
    }
    if (href.starts_with("http") || href.starts_with("ftp")) {
        return std::string(href);
    }
    if (href.starts_with("mailto:")) {
        return href.size() == std::string_view("mailto:").size() ? std::string()
                                                                 : std::string(href);
    }
    if (href.starts_with('#')) {
        return scanner.pageBaseURLUnchanged;
    }
    if (href.starts_with("../")) {
        std::string base = scanner.pageBaseURL;
        const size_t root = rootLength(base);
        while (href.starts_with("../")) {
            href.remove_prefix(3);
            // More "../" than folders stops at the site's root instead of eating the host.
            if (base.size() > root) {
                base = upOneFolder(base);
            }
        }
        if (!base.ends_with('/')) {
            base += '/';
        }
        return base + std::string(href);
    }
    if (href.starts_with("./")) {
        return scanner.pageBaseURL;
    }
    if (href.starts_with('/')) {
        const auto parts = parseUrl(scanner.pageBaseURL);
        const std::string scheme = parts ? parts->scheme : std::string();
        const std::string host = parts ? parts->host : std::string();
        return scheme + "://" + host + std::string(href);
    }
    if (href.empty()) {
        return scanner.pageBaseURL;
    }
    std::string base = scanner.pageBaseURL;
    const bool endsInPage = std::any_of(kPageExtensions.begin(), kPageExtensions.end(),
                                        [&](std::string_view ext) { return base.ends_with(ext); });
    if (!base.ends_with('/') && !endsInPage) {
        base += '/';
    }
    return base + std::string(href);
}

}  // namespace

std::string SiteScanner::rebuildHREF(std::string_view href) const {
    std::string result = resolveByRules(href, *this);
    return result.empty() ? siteBaseURL : result;
}

}  // namespace loomcrest
