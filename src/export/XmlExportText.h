#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace loomcrest {

struct XmlExportText {
    std::string text;
    // How many empty last-modified dates were left out.
    size_t emptyDatesLeftOut = 0;
};

// The XML sitemap as it is published: every "<lastmod></lastmod>\n\t\t" and every
// "<changefreq></changefreq>\n\t\t" removed (an empty element with the line feed and two
// tabs that follow it), then any other empty <lastmod> with the blanks before it, since
// search engines take an empty date as an invalid one. A "'" or a double quote in an address
// is written "&apos;" or "&quot;".
XmlExportText xmlSitemapForExport(std::string_view sitemap);

}  // namespace loomcrest
