#include "editors/LayoutRebuild.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/LayoutMarkup.h"

namespace loomcrest {
namespace {

using namespace layoutmarkup;

const std::string kHead = "<html>\n<head></head>\n";

// Lines as a scan writes them, without the line feed and tabs in front.
std::string titleDiv(int n, const std::string& address, const std::string& title) {
    return pageTitleLine(address, n, title).substr(kLineStart.size());
}
const std::string kP1 = titleDiv(1, "http://h/", "Home");
const std::string kP2 = linkLine("http://h/a.html", 2, "About & us").substr(kLineStart.size());
const std::string kP3 = titleDiv(3, "http://h/b.html?x=1&amp;y=2", "B");
const std::string kP4 = titleDiv(4, "http://h/c.html", "C");
const std::string kP5 = titleDiv(5, "http://h/d.html", "D");
const std::string kP6 = linkLine("http://h/e.html", 6, "E").substr(kLineStart.size());
const std::string kP7 = titleDiv(7, "http://h/f.html", "F");

std::string line(const std::string& div) {
    return std::string(kLineStart) + div;
}

// A full table row as a scan writes it; an empty item is a cell whose lines were deleted.
std::string row(std::initializer_list<std::string> items) {
    std::string cells;
    for (const std::string& item : items) {
        cells += std::string(kCellSeparator) + item;
    }
    return std::string(kRowOpening) + cells.substr(kCellSeparator.size()) +
           std::string(kRowClosing);
}

std::string layout(const std::string& rows, std::string_view closing = kTableEnd) {
    return kHead + std::string(kBodyAndTable) + rows + std::string(closing);
}

// A cell as a scan writes it, and as a re-pack writes it with a width; "" for a filler.
std::string cell(const std::string& lines) {
    return "<td>" + lines + std::string(kCellEnd);
}
std::string wide(const char* width, const std::string& div) {
    const std::string lines = div.empty() ? "\n\t\t\t&nbsp;" : div == "-" ? "" : line(div);
    return std::string("\n\t\t<td") + (*width ? " width=\"" + std::string(width) + "%\"" : "") +
           ">" + lines + std::string(kCellEnd);
}
std::string packedRow(const char* width, std::initializer_list<std::string> divs,
                      const char* fillerWidth = "32") {
    std::string text(kRowStart);
    for (const std::string& div : divs) {
        text += wide(div.empty() ? fillerWidth : width, div);
    }
    return text + std::string(kRowEnd);
}

std::vector<std::string> texts(const std::vector<std::string_view>& cells) {
    return {cells.begin(), cells.end()};
}

std::string rebuilt(std::string_view head, int columns, const std::vector<std::string>& cells) {
    const std::vector<std::string_view> views(cells.begin(), cells.end());
    return rebuiltLayout(head, columns, views);
}

std::string repacked(const std::string& scanned, int columns) {
    bool removed = false;
    const std::string text = rebuiltLayout(kHead, columns, cellsToKeep(scanned, removed));
    EXPECT_TRUE(removed) << scanned;
    return text;
}

TEST(LayoutRebuild, CellWalkDropsEmptyCells) {
    bool removed = true;
    const std::vector<std::string> both = {cell(line(kP1)), cell(line(kP2))};
    EXPECT_EQ(texts(cellsToKeep(layout(row({line(kP1), line(kP2)})), removed)), both);
    EXPECT_FALSE(removed);
    EXPECT_EQ(texts(cellsToKeep(layout(row({line(kP1), line(kP2), ""})), removed)), both);
    EXPECT_TRUE(removed);
}

TEST(LayoutRebuild, ThreeColumnsRepackAfterTheFifthOfSevenCellsEmptied) {
    const std::string scanned =
        layout(row({line(kP1), line(kP2), line(kP3)}) + row({line(kP4), "", line(kP6)}) +
                   std::string(kRowOpening) + line(kP7) + std::string(kCellSeparator),
               kTwoPaddedCellsEnd);
    bool removed = false;
    const auto cells = cellsToKeep(scanned, removed);
    EXPECT_TRUE(removed);
    // The second padding cell moved into the place of the first and was skipped.
    EXPECT_EQ(texts(cells), (std::vector<std::string>{
                                cell(line(kP1)), cell(line(kP2)), cell(line(kP3)), cell(line(kP4)),
                                cell(line(kP6)), cell(line(kP7)), "<td>&nbsp;</td>"}));
    // Its row, one empty cell and two fillers, is taken out again, all but "\n\t".
    EXPECT_EQ(rebuiltLayout(kHead, 3, cells),
              layout(packedRow("32", {kP1, kP2, kP3}) + packedRow("32", {kP4, kP6, kP7}) + "\n\t"));
}

TEST(LayoutRebuild, RowsOfOneTwoAndThreeColumns) {
    // Three columns fill the last row; two end an odd count with a narrow filler.
    EXPECT_EQ(
        repacked(layout(row({line(kP1), line(kP2), line(kP3)}) + row({line(kP4), line(kP5), ""})),
                 3),
        layout(packedRow("32", {kP1, kP2, kP3}) + packedRow("32", {kP4, kP5, ""})));
    EXPECT_EQ(rebuiltLayout(kHead, 3, {}), layout(""));
    EXPECT_EQ(repacked(layout(row({line(kP1), line(kP2)}) + row({"", line(kP4)})), 2),
              layout(packedRow("49", {kP1, kP2}) + packedRow("49", {kP4, ""})));
    // A last row whose only cell is empty goes with three columns and stays with two.
    EXPECT_EQ(rebuilt(kHead, 3, {cell(line(kP1)), cell(line(kP2)), cell(line(kP3)), cell("")}),
              layout(packedRow("32", {kP1, kP2, kP3}) + "\n\t"));
    const std::string scanned = layout(row({line(kP1), line(kP2)}) + row({line(kP3), line(kP4)}) +
                                           std::string(kRowOpening) + std::string(kCellSeparator),
                                       kPaddedRowEnd);
    bool removed = false;
    const auto cells = cellsToKeep(scanned, removed);
    EXPECT_TRUE(removed);
    EXPECT_EQ(texts(cells),
              (std::vector<std::string>{cell(line(kP1)), cell(line(kP2)), cell(line(kP3)),
                                        cell(line(kP4)), "<td>&nbsp;</td>"}));
    EXPECT_EQ(rebuiltLayout(kHead, 2, cells),
              layout(packedRow("49", {kP1, kP2}) + packedRow("49", {kP3, kP4}) +
                     packedRow("49", {"-", ""})));
    // One column puts each cell in a row of its own.
    EXPECT_EQ(rebuilt(kHead, 1, {cell(line(kP1) + line(kP2)), cell(line(kP3))}),
              layout(std::string(kRowStart) + wide("", kP1 + line(kP2)) + std::string(kRowEnd) +
                     packedRow("", {kP3})));
}

TEST(LayoutRebuild, LinesKeepTheirBytes) {
    const std::string link =
        "<div class=\"zplPageLink\"><a href=\"http://h/caf%C3%A9.html?a=1&b=2---LINKID:12---\">"
        "Caf\xC3\xA9 &amp; &lt;b&gt; \"Bar\"\n\xC2\xA0x<!-- LINKID: 12 --></a></div>";
    bool removed = false;
    const std::string html = layout(row({line(kP2) + line(link), ""}));
    const auto cells = cellsToKeep(html, removed);
    EXPECT_EQ(texts(cells), std::vector<std::string>{cell(line(kP2) + line(link))});
    EXPECT_EQ(rebuiltLayout("<html>\n", 1, cells),
              "<html>\n" + std::string(kBodyAndTable) + std::string(kRowStart) +
                  wide("", kP2 + line(link)) + std::string(kRowEnd) + std::string(kTableEnd));
}

}  // namespace
}  // namespace loomcrest
