#pragma once

#include <string_view>

// The pieces of markup the HTML layouts are built from, shared by the code that writes the
// layouts during a scan and the code that finds and re-packs their lines afterwards.
namespace loomcrest::layoutmarkup {

// What stands before every page-title and link line.
inline constexpr std::string_view kLineStart = "\n\t\t\t";
// The opening of every line's div, followed by the rest of a title's or a link's up to the href.
inline constexpr std::string_view kLineDivStart = "<div class=\"zplPage";
inline constexpr std::string_view kTitleDivRest = "Title\"><a href=\"";
inline constexpr std::string_view kLinkDivRest = "Link\"><a href=\"";
// The href of a line ends with kLinkIdMarker, the number and kLinkIdMarkerEnd, which
// kLinkIdHrefEnd follows; its text with kLinkIdComment, the number and kLineEnd.
inline constexpr std::string_view kLinkIdMarker = "---LINKID:";
inline constexpr std::string_view kLinkIdMarkerEnd = "---";
inline constexpr std::string_view kLinkIdHrefEnd = "---\">";
inline constexpr std::string_view kLinkIdComment = "<!-- LINKID: ";
inline constexpr std::string_view kLineEnd = " --></a></div>";

// Table rows and cells as a scan writes them.
inline constexpr std::string_view kRowStart = "\n\t<tr valign=\"top\">";
inline constexpr std::string_view kCellStart = "\n\t\t<td>";
inline constexpr std::string_view kCellEnd = "\n\t\t</td>";
inline constexpr std::string_view kRowEnd = "\n\t</tr>";
// kRowStart and kCellStart; kCellEnd and kCellStart; kCellEnd and kRowEnd.
inline constexpr std::string_view kRowOpening = "\n\t<tr valign=\"top\">\n\t\t<td>";
inline constexpr std::string_view kCellSeparator = "\n\t\t</td>\n\t\t<td>";
inline constexpr std::string_view kRowClosing = "\n\t\t</td>\n\t</tr>";

// Follows every page block of the one-column layouts.
inline constexpr std::string_view kClearer = "\n<div class=\"clearer\">&nbsp;</div>";
// The start of the body of a table layout.
inline constexpr std::string_view kBodyAndTable =
    "<body>\n<table width=\"100%\" border=\"0\" cellpadding=\"10\">";

// The ends of the files: a one-column layout, a table with no open row, and a table whose
// open row has one or two cells left to pad.
inline constexpr std::string_view kOneColumnEnd = "\n</body>\n</html>";
inline constexpr std::string_view kTableEnd = "\n</table>\n</body>\n</html>";
inline constexpr std::string_view kPaddedRowEnd =
    "&nbsp;</td>\n\t</tr>\n</table>\n</body>\n</html>";
inline constexpr std::string_view kTwoPaddedCellsEnd =
    "&nbsp;</td>\n\t\t<td>&nbsp;</td>\n\t</tr>\n</table>\n</body>\n</html>";

}  // namespace loomcrest::layoutmarkup
