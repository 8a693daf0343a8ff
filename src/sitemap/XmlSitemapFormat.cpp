#include "sitemap/XmlSitemapFormat.h"

#include "platform/Text.h"

namespace loomcrest {

std::string escapeLocation(std::string_view url) {
    std::string escaped = replaceAll(url, "&", "&amp;");
    escaped = replaceAll(escaped, "'", "&apos;");
    escaped = replaceAll(escaped, "\"", "&quot;");
    escaped = replaceAll(escaped, ">", "&gt;");
    return replaceAll(escaped, "<", "&lt;");
}

std::string xmlSitemapEntry(std::string_view url, std::string_view lastModified) {
    std::string entry = "\n\t<url>\n\t\t<loc>";
    entry.append(escapeLocation(url)).append("</loc>\n\t\t<lastmod>").append(lastModified);
    entry.append(
        "</lastmod>\n\t\t<changefreq>monthly</changefreq>\n\t\t<priority>0.5</priority>"
        "\n\t</url>");
    return entry;
}

}  // namespace loomcrest
