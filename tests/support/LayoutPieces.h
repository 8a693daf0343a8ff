#pragma once

#include <string>
#include <string_view>

#include "sitemap/HtmlSitemapFormat.h"

namespace loomcrest::test {

// What a scan appends to a one-column layout for `item`.
inline std::string oneColumnPiece(std::string_view item) {
    const PieceFrame frame = oneColumnFrame();
    return std::string(frame.before).append(item).append(frame.after);
}

// What a scan appends to a table layout of `columns` cells a row for `item`; advances the
// count of the open row's filled cells.
inline std::string tablePiece(std::string_view item, int columns, int& filledCells) {
    const PieceFrame frame = tableFrame(columns, filledCells);
    return std::string(frame.before).append(item).append(frame.after);
}

}  // namespace loomcrest::test
