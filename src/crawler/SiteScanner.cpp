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

bool SiteScanner::httpIsValid(std::string_view url) const {
    http::Request request;
    request.url = url;
    request.redirects = http::Redirects::Report;
    const http::Response response = http::send(request);
    if (!response.isHttp) {
        return false;
    }
    if (response.statusCode == 200) {
        return true;
    }
    process_.vrlmpBadLinkReasonArray.push_back(http::statusText(response.statusCode));
    return false;
}

void SiteScanner::loadRobotsRules(std::string_view robotsText) {
    robotsArray = parseRobotsText(robotsText);
}

void SiteScanner::setSitemapFolder(std::string folder) {
    sitemapFiles_.closeAll();
    sitemapFolder_ = std::move(folder);
}

std::string SiteScanner::sitemapFile(std::string_view name) const {
    return sitemapFolder_ + "/" + std::string(name);
}

void SiteScanner::buildPageTitleSitemap(std::string_view fragment, std::string_view plainLink) {
    sitemapFiles_.append(sitemapFile(kOneColumnPagesOnly), oneColumnPiece(fragment));
    sitemapFiles_.append(sitemapFile(kTwoColumnPagesOnly), tablePiece(fragment, 2, twoColCountPO));
    sitemapFiles_.append(sitemapFile(kThreeColumnPagesOnly),
                         tablePiece(fragment, 3, threeColCountPO));
    sitemapFiles_.append(sitemapFile(kXmlSitemap),
                         xmlSitemapEntry(plainLink, lastModifiedDate(plainLink)));
}

void SiteScanner::buildAllLinksSitemaps(std::string_view pageData) {
    if (pageData.empty() || !isValidUtf8(pageData)) {
        return;
    }
    sitemapFiles_.append(sitemapFile(kOneColumnAllLinks), oneColumnPiece(pageData));
    sitemapFiles_.append(sitemapFile(kTwoColumnAllLinks), tablePiece(pageData, 2, twoColCountAP));
    sitemapFiles_.append(sitemapFile(kThreeColumnAllLinks),
                         tablePiece(pageData, 3, threeColCountAP));
}

}  // namespace loomcrest
