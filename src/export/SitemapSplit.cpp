#include "export/SitemapSplit.h"

#include <cctype>

#include "sitemap/SitemapEntries.h"
#include "sitemap/SitemapValues.h"
#include "sitemap/XmlSitemapFormat.h"

namespace loomcrest {

namespace {

std::string_view fileNameOf(std::string_view path) {
    const size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string percentEncoded(std::string_view name) {
    static constexpr std::string_view kHex = "0123456789ABCDEF";
    std::string encoded;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (std::isalnum(byte) != 0 || c == '-' || c == '.' || c == '_' || c == '~') {
            encoded += c;
        } else {
            encoded.append({'%', kHex[byte >> 4], kHex[byte & 0xf]});
        }
    }
    return encoded;
}

}  // namespace

std::vector<std::string> splitSitemap(std::string_view sitemap, const SitemapLimits& limits) {
    const std::vector<TextRange> entries = topLevelElements(sitemap);
    if (entries.empty() ||
        (entries.size() <= limits.maxUrls && sitemap.size() <= limits.maxBytes)) {
        return {std::string(sitemap)};
    }
    const std::string_view head = sitemap.substr(0, entries.front().begin);
    const std::string_view tail = sitemap.substr(entries.back().end);
    std::vector<std::string> parts;
    std::string part;
    size_t inPart = 0;
    const auto closePart = [&] {
        parts.push_back(part.append(tail));
        part.clear();
        inPart = 0;
    };
    for (size_t i = 0; i < entries.size(); ++i) {
        // An entry brings the separator that stood before it in the original text.
        const size_t from = inPart == 0 ? entries[i].begin : entries[i - 1].end;
        const size_t length = entries[i].end - from;
        if (inPart > 0 &&
            (inPart == limits.maxUrls || part.size() + length + tail.size() > limits.maxBytes)) {
            closePart();
            --i;
            continue;
        }
        if (inPart == 0) {
            part.assign(head);
        }
        part.append(sitemap.substr(from, length));
        ++inPart;
    }
    closePart();
    return parts;
}

std::string sitemapPartPath(std::string_view file, size_t number, bool compressed) {
    const std::string_view name = fileNameOf(file);
    const size_t dot = name.rfind('.');
    const size_t split =
        dot == std::string_view::npos || dot == 0 ? file.size() : file.size() - name.size() + dot;
    std::string path(file.substr(0, split));
    path.append("-").append(std::to_string(number)).append(file.substr(split));
    return compressed ? path + ".gz" : path;
}

std::string sitemapIndex(std::string_view siteUrl, const std::vector<std::string>& partPaths) {
    const std::string folder = siteFolderUrl(siteUrl);
    std::string index =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<sitemapindex xmlns=\"http://www.sitemaps.org/"
        "schemas/sitemap/0.9\">";
    for (const std::string& path : partPaths) {
        index.append("\n\t<sitemap>\n\t\t<loc>")
            .append(escapeLocation(folder + percentEncoded(fileNameOf(path))))
            .append("</loc>\n\t</sitemap>");
    }
    return index + "\n</sitemapindex>";
}

}  // namespace loomcrest
