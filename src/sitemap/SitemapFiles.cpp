#include "sitemap/SitemapFiles.h"

#include <array>
#include <utility>

#include "platform/FileSystem.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/LayoutMarkup.h"

namespace loomcrest {

namespace {

constexpr std::string_view kXmlHeader =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<urlset \n"
    "\txmlns=\"http://www.sitemaps.org/schemas/sitemap/0.9\" \n"
    "\txmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" \n"
    "\txsi:schemaLocation=\"http://www.sitemaps.org/schemas/sitemap/0.9 \n"
    "\thttp://www.sitemaps.org/schemas/sitemap/0.9/sitemap.xsd\">\n"
    "<!-- Created with Loomcrest -->";

std::string inFolder(const std::string& folder, std::string_view name) {
    return folder + "/" + std::string(name);
}

}  // namespace

std::string_view xmlSitemapHeader() {
    return kXmlHeader;
}

std::string_view oneColumnClosing() {
    return layoutmarkup::kOneColumnEnd;
}

std::string_view twoColumnClosing(int32_t filledCells) {
    return filledCells == 0 ? layoutmarkup::kTableEnd : layoutmarkup::kPaddedRowEnd;
}

std::string_view threeColumnClosing(int32_t filledCells) {
    if (filledCells == 0) {
        return layoutmarkup::kTableEnd;
    }
    // The cell the last separator opened is padded and closed, then the row.
    return filledCells == 1 ? layoutmarkup::kTwoPaddedCellsEnd : layoutmarkup::kPaddedRowEnd;
}

WriteResult writeSitemapHeaders(const std::string& folder) {
    const std::string head(htmlSitemapHead());
    const std::string tableHead = head + std::string(kTableOpening);
    const std::array<std::pair<std::string_view, std::string_view>, 7> headers = {{
        {kOneColumnPagesOnly, head},
        {kOneColumnAllLinks, head},
        {kTwoColumnPagesOnly, tableHead},
        {kThreeColumnPagesOnly, tableHead},
        {kTwoColumnAllLinks, tableHead},
        {kThreeColumnAllLinks, tableHead},
        {kXmlSitemap, kXmlHeader},
    }};
    for (const auto& [name, header] : headers) {
        if (WriteResult written = writeFileAtomically(inFolder(folder, name), header); !written) {
            return written;
        }
    }
    return {};
}

WriteResult closeSitemapFiles(const std::string& folder, int32_t twoColumnCells,
                              int32_t threeColumnCells) {
    const std::array<std::pair<std::string_view, std::string_view>, 7> closings = {{
        {kOneColumnPagesOnly, oneColumnClosing()},
        {kOneColumnAllLinks, oneColumnClosing()},
        {kTwoColumnPagesOnly, twoColumnClosing(twoColumnCells)},
        {kTwoColumnAllLinks, twoColumnClosing(twoColumnCells)},
        {kThreeColumnPagesOnly, threeColumnClosing(threeColumnCells)},
        {kThreeColumnAllLinks, threeColumnClosing(threeColumnCells)},
        {kXmlSitemap, kXmlSitemapClosing},
    }};
    for (const auto& [name, closing] : closings) {
        if (WriteResult written = appendToFile(inFolder(folder, name), closing); !written) {
            return written;
        }
    }
    return {};
}

}  // namespace loomcrest
