#include "crawler/SiteScanner.h"

#include "app/ProcessState.h"
#include "crawler/RobotsRules.h"
#include "platform/FileSystem.h"
#include "platform/Http.h"
#include "platform/Text.h"
#include "platform/Url.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/LastModified.h"
#include "sitemap/SitemapFiles.h"
#include "sitemap/XmlSitemapFormat.h"
#include "sites/PageExtensions.h"

namespace loomcrest {

namespace {

std::string pathOf(std::string_view url) {
    const auto parts = parseUrl(url);
    return parts ? parts->path : std::string();
}

std::string cutBackToSlash(std::string url) {
    while (!url.empty() && url.back() != '/') {
        url.pop_back();
    }
    return url;
}

}  // namespace

void SiteScanner::setAllowedMedia() {
    allowedMediaArray.assign(kPageExtensions.begin(), kPageExtensions.end());
}

void SiteScanner::setSiteBaseURL(std::string_view siteURL) {
    siteBaseURL = siteURL;
    if (pathOf(siteBaseURL).find('.') != std::string::npos) {
        siteBaseURL = cutBackToSlash(siteBaseURL);
    }
    if (!siteBaseURL.ends_with('/')) {
        siteBaseURL = cutBackToSlash(siteBaseURL);
    }
}

void SiteScanner::setPageBaseURLs(std::string_view pageURL) {
    pageBaseURLUnchanged = pageURL;
    pageBaseURL = pageURL;
    if (pathOf(pageBaseURL).find('.') != std::string::npos) {
        pageBaseURL = cutBackToSlash(pageBaseURL);
    }
}

bool SiteScanner::httpIsValid(std::string_view url, const http::Session* session,
                              http::Response* answer) const {
    http::Request request;
    request.url = url;
    request.session = session;
    request.redirects = http::Redirects::Report;
    request.timeout = kPageTimeout;
    http::Response response = http::send(request);
    const bool valid = response.isHttp && response.statusCode == 200;
    if (response.isHttp && !valid) {
        process_.vrlmpBadLinkReasonArray.push_back(http::statusText(response.statusCode));
    }
    if (answer != nullptr) {
        *answer = std::move(response);
    }
    return valid;
}

void SiteScanner::loadRobotsRules(std::string_view robotsText) {
    robotsArray = parseRobotsText(robotsText);
}

void SiteScanner::setSitemapFolder(std::string folder) {
    (void)sitemapFiles_.closeAll();
    sitemapFolder_ = std::move(folder);
    writeFailure_ = {};
}

void SiteScanner::releaseSitemapFiles() {
    if (WriteResult closed = sitemapFiles_.closeAll(); !closed && writeFailure_) {
        writeFailure_ = std::move(closed);
    }
}

void SiteScanner::appendToSitemap(std::string_view name, std::string_view piece) {
    appendToSitemap(name, {piece});
}

// Every page appends to seven files: their paths are built in one buffer, and a page's block
// goes out without being copied into a piece of its own first.
void SiteScanner::appendToSitemap(std::string_view name,
                                  std::initializer_list<std::string_view> pieces) {
    if (!writeFailure_) {
        return;
    }
    sitemapPath_.assign(sitemapFolder_).append("/").append(name);
    if (WriteResult written = sitemapFiles_.append(sitemapPath_, pieces); !written) {
        writeFailure_ = std::move(written);
    }
}

void SiteScanner::appendFramed(std::string_view name, const PieceFrame& frame,
                               std::string_view item) {
    appendToSitemap(name, {frame.before, item, frame.after});
}

void SiteScanner::buildPageTitleSitemap(std::string_view fragment, std::string_view plainLink) {
    buildPageTitleSitemap(fragment, plainLink, lastModifiedDate(plainLink));
}

void SiteScanner::buildPageTitleSitemap(std::string_view fragment, std::string_view plainLink,
                                        std::string_view lastModified) {
    appendFramed(kOneColumnPagesOnly, oneColumnFrame(), fragment);
    appendFramed(kTwoColumnPagesOnly, tableFrame(2, twoColCountPO), fragment);
    appendFramed(kThreeColumnPagesOnly, tableFrame(3, threeColCountPO), fragment);
    appendToSitemap(kXmlSitemap, xmlSitemapEntry(plainLink, lastModified));
}

void SiteScanner::buildAllLinksSitemaps(std::string_view pageData) {
    if (pageData.empty() || !isValidUtf8(pageData)) {
        return;
    }
    appendFramed(kOneColumnAllLinks, oneColumnFrame(), pageData);
    appendFramed(kTwoColumnAllLinks, tableFrame(2, twoColCountAP), pageData);
    appendFramed(kThreeColumnAllLinks, tableFrame(3, threeColCountAP), pageData);
}

}  // namespace loomcrest
