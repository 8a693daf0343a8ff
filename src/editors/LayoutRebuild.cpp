#include "editors/LayoutRebuild.h"

#include <cstddef>
#include <optional>

#include "platform/HtmlDocument.h"
#include "platform/Text.h"

namespace loomcrest {

namespace {

constexpr std::string_view kBodyAndTable =
    "<body>\n<table width=\"100%\" border=\"0\" cellpadding=\"10\">";
constexpr std::string_view kTableEnd = "\n</table>\n</body>\n</html>";
constexpr std::string_view kLineStart = "\n\t\t\t";
constexpr std::string_view kRowStart = "\n\t<tr valign=\"top\">";
constexpr std::string_view kCellEnd = "\n\t\t</td>";
constexpr std::string_view kRowEnd = "\n\t</tr>";
constexpr std::string_view kThirdCellStart = "\n\t\t<td width=\"32%\">";
constexpr std::string_view kHalfCellStart = "\n\t\t<td width=\"49%\">";
constexpr std::string_view kPlainCellStart = "\n\t\t<td>";
// A cell holding only a non-breaking space; the 32% width is also used to fill two-column rows.
constexpr std::string_view kThirdFillerCell = "\n\t\t<td width=\"32%\">\n\t\t\t&nbsp;\n\t\t</td>";
// A last row whose only real cell is empty, as re-packing can leave one behind.
constexpr std::string_view kEmptyLastRow =
    "<tr valign=\"top\">\n\t\t<td width=\"32%\">\n\t\t</td>\n\t\t<td width=\"32%\">\n\t\t\t&nbsp;"
    "\n\t\t</td>\n\t\t<td width=\"32%\">\n\t\t\t&nbsp;\n\t\t</td>\n\t</tr>";

std::string cellLines(std::string_view cell) {
    std::string lines;
    const auto document = MarkupDocument::parseHtml(cell);
    if (!document) {
        return lines;
    }
    for (const MarkupNode& div : document->select("//div")) {
        lines.append(kLineStart).append(div.markup());
    }
    return lines;
}

void appendOneColumn(std::string& out, const std::vector<std::string>& cells) {
    const std::string cellStart = std::string(kRowStart).append(kPlainCellStart);
    out.append(cellStart);
    for (const std::string& cell : cells) {
        out.append(cellLines(cell)).append(kCellEnd).append(kRowEnd).append(cellStart);
    }
    // Cut the row opened after the last cell.
    const size_t lastRowEnd = out.rfind("</tr>");
    out.resize(lastRowEnd == std::string::npos ? 0 : lastRowEnd + std::string_view("</tr>").size());
    out.append(kTableEnd);
}

// Rows of two or three cells; the last row is filled up with filler cells.
void appendTableColumns(std::string& out, const std::vector<std::string>& cells, int columns) {
    const std::string_view cellStart = columns == 2 ? kHalfCellStart : kThirdCellStart;
    int column = 1;
    for (const std::string& cell : cells) {
        if (column == 1) {
            out.append(kRowStart);
        }
        out.append(cellStart).append(cellLines(cell)).append(kCellEnd);
        if (column == columns) {
            out.append(kRowEnd);
            column = 0;
        }
        ++column;
    }
    if (column > 1) {
        for (; column <= columns; ++column) {
            out.append(kThirdFillerCell);
        }
        out.append(kRowEnd);
    }
    out.append(kTableEnd);
    if (containsIgnoringCase(out, kEmptyLastRow)) {
        out = replaceAll(out, kEmptyLastRow, "");
    }
}

}  // namespace

std::vector<std::string> cellsToKeep(std::string_view html, bool& removedAny) {
    removedAny = false;
    std::vector<std::string> cells;
    const auto document = MarkupDocument::parseHtml(html);
    if (!document) {
        return cells;
    }
    for (const MarkupNode& cell : document->select("//td")) {
        cells.push_back(cell.markup());
    }
    // The index moves on after a removal as well, skipping the cell that moved up.
    for (size_t i = 0; i < cells.size(); ++i) {
        if (!containsIgnoringCase(cells[i], "<div ")) {
            cells.erase(cells.begin() + static_cast<std::ptrdiff_t>(i));
            removedAny = true;
        }
    }
    return cells;
}

std::string rebuiltLayout(std::string_view head, int columns,
                          const std::vector<std::string>& cells) {
    std::string out(head);
    out.append(kBodyAndTable);
    if (columns <= 1) {
        appendOneColumn(out, cells);
    } else {
        appendTableColumns(out, cells, columns);
    }
    return out;
}

}  // namespace loomcrest
