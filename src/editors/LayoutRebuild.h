#pragma once

#include <string>
#include <string_view>
#include <vector>

// Re-packing the table cells of an HTML sitemap layout after one of its lines was deleted:
// cells left without a line are dropped and the rest are laid out again row by row.
namespace loomcrest {

// Every "td" element of the layout, serialised, in document order, less the cells that hold no
// line ("<div " element). After an empty cell is dropped the walk moves on past the cell that
// took its place, so of two adjacent empty cells only the first goes. `removedAny` tells
// whether a cell was dropped. Empty when the text cannot be parsed.
std::vector<std::string> cellsToKeep(std::string_view html, bool& removedAny);

// The layout rebuilt from `cells` (as cellsToKeep gives them) in rows of `columns` cells (1, 2
// or 3): `head` is the layout's text up to, not including, its first "<body>"; each cell
// contributes its "div" lines, each on a line of its own.
std::string rebuiltLayout(std::string_view head, int columns,
                          const std::vector<std::string>& cells);

}  // namespace loomcrest
