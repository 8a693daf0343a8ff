#include "sitemap/SitemapFiles.h"

#include "platform/FileSystem.h"
#include "sitemap/HtmlSitemapFormat.h"

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

constexpr std::string_view kTableClosing = "\n</table>\n</body>\n</html>";
// The cell the last separator opened is padded and closed, then the row.
constexpr std::string_view kPaddedRowClosing = "&nbsp;</td>\n\t</tr>\n</table>\n</body>\n</html>";
constexpr std::string_view kTwoPaddedCellsClosing =
    "&nbsp;</td>\n\t\t<td>&nbsp;</td>\n\t</tr>\n</table>\n</body>\n</html>";

std::string inFolder(const std::string& folder, std::string_view name) {
    return folder + "/" + std::string(name);
}

}  // namespace

std::string_view xmlSitemapHeader() {
    return kXmlHeader;
}

std::string_view oneColumnClosing() {
    return "\n</body>\n</html>";
}

std::string_view twoColumnClosing(int32_t filledCells) {
    return filledCells == 0 ? kTableClosing : kPaddedRowClosing;
}

std::string_view threeColumnClosing(int32_t filledCells) {
    if (filledCells == 0) {
        return kTableClosing;
    }
    return filledCells == 1 ? kTwoPaddedCellsClosing : kPaddedRowClosing;
}

void writeSitemapHeaders(const std::string& folder) {
    const std::string head(htmlSitemapHead());
    const std::string tableHead = head + std::string(kTableOpening);
    writeFileAtomically(inFolder(folder, kOneColumnPagesOnly), head);
    writeFileAtomically(inFolder(folder, kOneColumnAllLinks), head);
    writeFileAtomically(inFolder(folder, kTwoColumnPagesOnly), tableHead);
    writeFileAtomically(inFolder(folder, kThreeColumnPagesOnly), tableHead);
    writeFileAtomically(inFolder(folder, kTwoColumnAllLinks), tableHead);
    writeFileAtomically(inFolder(folder, kThreeColumnAllLinks), tableHead);
    writeFileAtomically(inFolder(folder, kXmlSitemap), kXmlHeader);
}

void closeSitemapFiles(const std::string& folder, int32_t twoColumnCells,
                       int32_t threeColumnCells) {
    appendToFile(inFolder(folder, kOneColumnPagesOnly), oneColumnClosing());
    appendToFile(inFolder(folder, kOneColumnAllLinks), oneColumnClosing());
    appendToFile(inFolder(folder, kTwoColumnPagesOnly), twoColumnClosing(twoColumnCells));
    appendToFile(inFolder(folder, kTwoColumnAllLinks), twoColumnClosing(twoColumnCells));
    appendToFile(inFolder(folder, kThreeColumnPagesOnly), threeColumnClosing(threeColumnCells));
    appendToFile(inFolder(folder, kThreeColumnAllLinks), threeColumnClosing(threeColumnCells));
    appendToFile(inFolder(folder, kXmlSitemap), kXmlSitemapClosing);
}

}  // namespace loomcrest
