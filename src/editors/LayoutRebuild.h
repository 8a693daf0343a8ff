#pragma once

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
// tells whether a cell was dropped. The spans point into `html`.
std::vector<std::string_view> cellsToKeep(std::string_view html, bool& removedAny);

// The layout rebuilt from `cells` (as cellsToKeep gives them) in rows of `columns` cells (1, 2
// or 3): `head` is the layout's text up to, not including, its first "<body>"; each line of a
// cell, from "<div" to its "</div>", is copied onto a line of its own.
std::string rebuiltLayout(std::string_view head, int columns,
                          std::span<const std::string_view> cells);

}  // namespace loomcrest
