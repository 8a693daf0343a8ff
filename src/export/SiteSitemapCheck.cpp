#include "export/SiteSitemapCheck.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "export/Gzip.h"
#include "sitemap/SitemapCheck.h"
#include "sitemap/SitemapFiles.h"
#include "sitemap/SitemapValues.h"
#include "sites/DataPaths.h"
#include "sites/SiteFile.h"

namespace loomcrest {

namespace {

struct FileBytes {
    std::string bytes;
    int error = 0;
};

FileBytes readBytes(const std::string& path) {
    FileBytes file;
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        file.error = errno;
        return file;
    }
    std::array<char, 1 << 16> buffer{};
    for (;;) {
        const ssize_t got = ::read(fd, buffer.data(), buffer.size());
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            file.error = got < 0 ? errno : 0;
            break;
        }
        file.bytes.append(buffer.data(), static_cast<size_t>(got));
    }
    ::close(fd);
    return file;
}

}  // namespace

std::string siteSitemapPath(std::string_view siteName) {
    return siteFolderLocation(siteName) + "/" + std::string(kXmlSitemap);
}

SitemapFileCheck checkSitemapFile(std::string_view siteName, const std::string& path) {
    SitemapFileCheck check;
    FileBytes file = readBytes(path);
    if (file.error != 0) {
        check.readFailure = std::error_code(file.error, std::generic_category()).message();
        return check;
    }
    if (isGzip(file.bytes)) {
        auto contents = gunzip(file.bytes, kMaxSitemapBytes + 1);
        if (!contents) {
            check.readFailure = "The file is not a valid gzip file";
            return check;
        }
        if (contents->truncated) {
            check.problems.push_back({1, SitemapProblem::Severity::Error,
                                      "The sitemap is longer than " +
                                          groupedDigits(kMaxSitemapBytes) +
                                          " bytes once uncompressed"});
            return check;
        }
        file.bytes = std::move(contents->bytes);
    }
    const std::string siteUrl =
        readSiteField(readSiteFile(siteName), SiteField::SiteURL).value_or("");
    check.problems = checkSitemap(file.bytes, siteUrl);
    return check;
}

}  // namespace loomcrest
