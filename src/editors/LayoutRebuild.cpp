#include "editors/LayoutRebuild.h"

#include <algorithm>
#include <cstddef>

#include "platform/LargeText.h"
#include "platform/Text.h"
#include "sitemap/LayoutMarkup.h"

namespace loomcrest {

namespace {

using namespace layoutmarkup;

constexpr std::string_view kThirdCellStart = "\n\t\t<td width=\"32%\">";
constexpr std::string_view kHalfCellStart = "\n\t\t<td width=\"49%\">";
// A cell holding only a non-breaking space; the 32% width is also used to fill two-column rows.
constexpr std::string_view kThirdFillerCell = "\n\t\t<td width=\"32%\">\n\t\t\t&nbsp;\n\t\t</td>";
// A last row whose only real cell is empty, as re-packing can leave one behind.
constexpr std::string_view kEmptyLastRow =
    "<tr valign=\"top\">\n\t\t<td width=\"32%\">\n\t\t</td>\n\t\t<td width=\"32%\">\n\t\t\t&nbsp;"
    "\n\t\t</td>\n\t\t<td width=\"32%\">\n\t\t\t&nbsp;\n\t\t</td>\n\t</tr>";

// The end of a cell's content: its "</td>", or the start of the next cell when the end tag is
// missing (a parser closes the cell there too).
size_t cellEnd(std::string_view html, size_t start) {
    const size_t close = html.find("</td>", start);
    const size_t next = html.find("<td", start);
    return std::min({close, next, html.size()});
}

bool isCellStart(std::string_view html, size_t at) {
    const size_t after = at + std::string_view("<td").size();
    return after < html.size() &&
           (html[after] == '>' || html[after] == ' ' || html[after] == '\t' || html[after] == '\n');
}

// Each "<div" ... "</div>" of the cell, each on a line of its own.
void appendCellLines(std::string& out, std::string_view cell) {
    if (cell.ends_with("</td>")) {
        cell.remove_suffix(std::string_view("</td>").size());
    }
    constexpr std::string_view kDivStart = "<div";
    constexpr std::string_view kDivEnd = "</div>";
    size_t at = cell.find(kDivStart);
    while (at != std::string_view::npos) {
        const size_t close = cell.find(kDivEnd, at);
        const size_t end = close == std::string_view::npos ? cell.size() : close + kDivEnd.size();
        out.append(kLineStart).append(cell.substr(at, end - at));
        at = cell.find(kDivStart, end);
    }
}

void appendOneColumn(std::string& out, std::span<const std::string_view> cells) {
    const std::string cellStart = std::string(kRowStart).append(kCellStart);
    out.append(cellStart);
    for (const std::string_view cell : cells) {
        appendCellLines(out, cell);
        out.append(kCellEnd).append(kRowEnd).append(cellStart);
    }
    // Cut the row opened after the last cell.
    const size_t lastRowEnd = out.rfind("</tr>");
    out.resize(lastRowEnd == std::string::npos ? 0 : lastRowEnd + std::string_view("</tr>").size());
    out.append(kTableEnd);
}

// Rows of two or three cells; the last row is filled up with filler cells.
void appendTableColumns(std::string& out, std::span<const std::string_view> cells, int columns) {
    const std::string_view cellStart = columns == 2 ? kHalfCellStart : kThirdCellStart;
    int column = 1;
    for (const std::string_view cell : cells) {
        if (column == 1) {
            out.append(kRowStart);
        }
        out.append(cellStart);
        appendCellLines(out, cell);
        out.append(kCellEnd);
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

std::vector<size_t> rowStarts(std::string_view html) {
    std::vector<size_t> starts;
    for (size_t at = html.find(kRowStart); at != std::string_view::npos;
         at = html.find(kRowStart, at + kRowStart.size())) {
        starts.push_back(at);
    }
    return starts;
}

size_t cellCount(std::string_view html) {
    size_t count = 0;
    for (size_t at = html.find("<td"); at != std::string_view::npos;
         at = html.find("<td", at + 1)) {
        count += isCellStart(html, at) ? 1 : 0;
    }
    return count;
}

}  // namespace

std::optional<RowChange> rowChange(std::string_view before, size_t firstDropped,
                                   std::string_view rebuilt, int columns) {
    const std::vector<size_t> rowsBefore = rowStarts(before);
    const std::vector<size_t> rowsAfter = rowStarts(rebuilt);
    const size_t tableEnd = rebuilt.rfind(kTableEnd);
    if (columns < 2 || rowsBefore.size() < 2 || firstDropped < rowsBefore.back() ||
        rowsAfter.size() < rowsBefore.size() - 1 || tableEnd == std::string_view::npos) {
        return std::nullopt;
    }
    const size_t keptRows = rowsBefore.size() - 1;
    // Rows of the scan's form and of the rebuilt form hold `columns` cells but the last.
    if (cellCount(before.substr(0, rowsBefore.back())) != keptRows * static_cast<size_t>(columns)) {
        return std::nullopt;
    }
    const size_t newRows = keptRows < rowsAfter.size() ? rowsAfter[keptRows] : tableEnd;
    return RowChange{keptRows, rowsBefore.size(), columns == 2 ? "49%" : "32%",
                     std::string(rebuilt.substr(newRows, tableEnd - newRows))};
}

std::vector<std::string_view> cellsToKeep(std::string_view html, bool& removedAny,
                                          size_t* firstDropped) {
    removedAny = false;
    std::vector<std::string_view> all;
    for (size_t at = html.find("<td"); at != std::string_view::npos;
         at = html.find("<td", at + 1)) {
        if (!isCellStart(html, at)) {
            continue;
        }
        size_t end = cellEnd(html, at + 1);
        if (html.substr(end).starts_with("</td>")) {
            end += std::string_view("</td>").size();
        }
        all.push_back(html.substr(at, end - at));
    }
    // The cell after a dropped one is kept unchecked: it moved into the dropped cell's place
    // when the walk had already passed it.
    std::vector<std::string_view> kept;
    kept.reserve(all.size());
    for (size_t i = 0; i < all.size(); ++i) {
        if (containsIgnoringCase(all[i], "<div ")) {
            kept.push_back(all[i]);
            continue;
        }
        if (!removedAny && firstDropped != nullptr) {
            *firstDropped = static_cast<size_t>(all[i].data() - html.data());
        }
        removedAny = true;
        if (++i < all.size()) {
            kept.push_back(all[i]);
        }
    }
    return kept;
}

std::string rebuiltLayout(std::string_view head, int columns,
                          std::span<const std::string_view> cells) {
    size_t size = head.size() + kBodyAndTable.size() + kTableEnd.size() + kEmptyLastRow.size();
    for (const std::string_view cell : cells) {
        size += cell.size() + kRowStart.size() + kThirdCellStart.size() + kThirdFillerCell.size();
    }
    std::string out;
    reserveLargeText(out, size);
    out.append(head);
    out.append(kBodyAndTable);
    if (columns <= 1) {
        appendOneColumn(out, cells);
    } else {
        appendTableColumns(out, cells, columns);
    }
    return out;
}

}  // namespace loomcrest
