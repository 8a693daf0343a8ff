#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Re-packing the table cells of an HTML sitemap layout after one of its lines was deleted:
// cells left without a line are dropped and the rest are laid out again row by row. Cells and
// lines are spans of the layout's own text, so every line keeps its bytes.
namespace loomcrest {

// Every table cell of the layout, from "<td" to its "</td>", in document order, less the cells
// that hold no line (no "<div "). After an empty cell is dropped the walk moves on past the
// cell that took its place, so of two adjacent empty cells only the first goes. `removedAny`
// tells whether a cell was dropped, `firstDropped` (when given) where the first dropped cell
// starts in `html`. The spans point into `html`.
std::vector<std::string_view> cellsToKeep(std::string_view html, bool& removedAny,
                                          size_t* firstDropped = nullptr);

// The layout rebuilt from `cells` (as cellsToKeep gives them) in rows of `columns` cells (1, 2
// or 3): `head` is the layout's text up to, not including, its first "<body>"; each line of a
// cell, from "<div" to its "</div>", is copied onto a line of its own.
std::string rebuiltLayout(std::string_view head, int columns,
                          std::span<const std::string_view> cells);

// What a re-pack changed when no cell moved to another row: only cells of the last row were
// dropped, so the rows before it kept their cells and gained a width.
struct RowChange {
    size_t keptRows = 0;    // rows whose cells stayed
    size_t rowsBefore = 0;  // rows of the layout before the re-pack
    std::string cellWidth;  // the width the kept rows' cells now carry
    std::string newRows;    // the rebuilt text of the rows after the kept ones
    bool operator==(const RowChange&) const = default;
};
// `before` is the layout that was re-packed into `rebuilt`, `firstDropped` as cellsToKeep gave
// it; nothing when cells moved to other rows.
std::optional<RowChange> rowChange(std::string_view before, size_t firstDropped,
                                   std::string_view rebuilt, int columns);

}  // namespace loomcrest
