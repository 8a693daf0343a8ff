#pragma once

#include <string>
#include <string_view>

// The HTML sitemap document: a head with its style block, then page-title and link lines in
// one column or in two- or three-column tables. Every href ends with "---LINKID:N---" and
// every anchor text with "<!-- LINKID: N -->", which tie a line to its entry.
namespace loomcrest {

// The 49 lines every layout file starts with, each ended by a line feed.
std::string_view htmlSitemapHead();
// Follows the head in the two- and three-column files, with no line feed after it.
inline constexpr std::string_view kTableOpening =
    R"(<table width="100%" border="0" cellpadding="10">)";

// A page's title line; the title is given as it stands and escaped here (escapeMarkup), and
// so is the address (escapeAddress), so that crawled text never becomes markup.
std::string pageTitleLine(std::string_view pageURL, int linkId, std::string_view title);
// A link line; the same escaping.
std::string linkLine(std::string_view linkURL, int linkId, std::string_view title);
// The same lines appended to `out`.
void appendPageTitleLine(std::string& out, std::string_view pageURL, int linkId,
                         std::string_view title);
void appendLinkLine(std::string& out, std::string_view linkURL, int linkId, std::string_view title);

// `line` without its LINKID markers: the href suffix "---LINKID:N---" and the comment
// "<!-- LINKID: N -->", as a published sitemap shows it.
std::string withoutLinkMarkers(std::string_view line);

// A title or link text as the lines hold it: "&", "<" and ">" as "&amp;", "&lt;" and "&gt;";
// quotes pass through. A browser shows the text as it was.
std::string escapeMarkup(std::string_view text);
// An address as the href holds it: a double quote, which would end the attribute, as "%22".
std::string escapeAddress(std::string_view address);

// The markup that goes before and after an item appended to a layout file, so that the
// item is written as it is.
struct PieceFrame {
    std::string_view before;
    std::string_view after;
};
// For a one-column file.
PieceFrame oneColumnFrame();
// For a table of `columns` cells a row, given how many cells of the open row are filled;
// advances that count.
PieceFrame tableFrame(int columns, int& filledCells);

}  // namespace loomcrest
