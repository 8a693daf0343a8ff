#include "editors/LayoutRebuild.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <random>
#include <string>
#include <vector>

#include "platform/HtmlDocument.h"
#include "platform/Text.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/LayoutMarkup.h"
#include "sitemap/SitemapFiles.h"
#include "support/LayoutPieces.h"

namespace loomcrest {
namespace {

using namespace layoutmarkup;
using test::tablePiece;

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
    std::string text(kRowOpening);
    bool first = true;
    for (const std::string& item : items) {
        text += (first ? "" : std::string(kCellSeparator)) + item;
        first = false;
    }
    return text + std::string(kRowClosing);
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

std::string repacked(const std::string& scanned, int columns, bool expectRemoved = true) {
    bool removed = !expectRemoved;
    const std::string text = rebuiltLayout(kHead, columns, cellsToKeep(scanned, removed));
    EXPECT_EQ(removed, expectRemoved) << scanned;
    return text;
}

TEST(LayoutRebuild, CellWalkDropsEmptyCellsButSkipsTheOneThatMovedUp) {
    bool removed = true;
    EXPECT_EQ(texts(cellsToKeep("", removed)), std::vector<std::string>{});
    EXPECT_FALSE(removed);
    const std::vector<std::string> both = {cell(line(kP1)), cell(line(kP2))};
    EXPECT_EQ(texts(cellsToKeep(layout(row({line(kP1), line(kP2)})), removed)), both);
    EXPECT_FALSE(removed);
    EXPECT_EQ(texts(cellsToKeep(layout(row({line(kP1), line(kP2), ""})), removed)), both);
    EXPECT_TRUE(removed);
    const std::string twoEmpty =
        layout(row({line(kP1), "", ""}) + row({line(kP4), line(kP5), line(kP6)}));
    EXPECT_EQ(texts(cellsToKeep(twoEmpty, removed)),
              (std::vector<std::string>{cell(line(kP1)), "<td>\n\t\t</td>", cell(line(kP4)),
                                        cell(line(kP5)), cell(line(kP6))}));
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
    EXPECT_EQ(rebuilt(kHead, 3, {cell(line(kP1))}), layout(packedRow("32", {kP1, "", ""})));
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
    // A cell left open ends where the next one starts.
    EXPECT_EQ(
        texts(cellsToKeep("<table><tr><td>" + line(link) + "<td>" + line(kP1) + "</td>", removed)),
        (std::vector<std::string>{"<td>" + line(link), "<td>" + line(kP1) + "</td>"}));
}

// The re-pack as it was first written: the layout parsed with libxml2, every cell and every
// line of a cell serialised by the parser. Rows are laid out by the same code as before.
std::string parsedRepack(std::string_view html, int columns, bool& removedAny) {
    removedAny = false;
    std::vector<std::string> cells;
    const auto document = MarkupDocument::parseHtml(html);
    for (const MarkupNode& cell : document->select("//td")) {
        cells.push_back(cell.markup());
    }
    for (size_t i = 0; i < cells.size(); ++i) {
        if (!containsIgnoringCase(cells[i], "<div ")) {
            cells.erase(cells.begin() + static_cast<std::ptrdiff_t>(i));
            removedAny = true;
        }
    }
    std::vector<std::string> lines;
    for (const std::string& cell : cells) {
        std::string text = "<td>";
        if (const auto document = MarkupDocument::parseHtml(cell)) {
            for (const MarkupNode& div : document->select("//div")) {
                text += "\n\t\t\t" + div.markup();
            }
        }
        lines.push_back(text + "</td>");
    }
    return rebuilt(html.substr(0, html.find("<body>")), columns, lines);
}

// A layout as a scan writes it, with `deleted` lines taken out again.
std::string generatedLayout(std::mt19937& random, int columns, bool pagesOnly, int deleted) {
    const std::vector<std::string> titles = {"Home",
                                             "Tom & Jerry",
                                             "A < B > C",
                                             "\"Quoted\" 'single'",
                                             "Caf\xC3\xA9 \xE2\x80\x94 x",
                                             "non\xC2\xA0"
                                             "breaking",
                                             "two\nlines",
                                             "&lt;script&gt; as text",
                                             "tab\there",
                                             "Could not find link title"};
    const std::vector<std::string> addresses = {"http://h/p.html", "http://h/d/q.php?id=4;x=1",
                                                "http://h/%7Euser/", "http://h/a-b_c.html#top",
                                                "https://other.example/x+y,z@w"};
    const auto pick = [&](const std::vector<std::string>& from) {
        return from[std::uniform_int_distribution<size_t>(0, from.size() - 1)(random)];
    };
    std::string html = std::string(htmlSitemapHead()) + std::string(kTableOpening);
    std::vector<std::string> lines;
    int filled = 0;
    int number = 0;
    const int pages = std::uniform_int_distribution<int>(1, 9)(random);
    for (int page = 0; page < pages; ++page) {
        std::string item = pageTitleLine(pick(addresses), number, pick(titles));
        lines.push_back(item);
        const int links = pagesOnly ? 0 : std::uniform_int_distribution<int>(0, 3)(random);
        for (int link = 0; link < links; ++link) {
            lines.push_back(linkLine(pick(addresses), ++number, pick(titles)));
            item += lines.back();
        }
        html += tablePiece(item, columns, filled);
        ++number;
    }
    html += columns == 2 ? twoColumnClosing(filled) : threeColumnClosing(filled);
    for (int i = 0; i < deleted && !lines.empty(); ++i) {
        const size_t gone = std::uniform_int_distribution<size_t>(0, lines.size() - 1)(random);
        html = replaceAll(html, lines[gone], "");
        lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(gone));
    }
    return html;
}

std::string withoutALine(std::mt19937& random, const std::string& html) {
    std::vector<size_t> starts;
    for (size_t at = html.find("\n\t\t\t<div"); at != std::string::npos;
         at = html.find("\n\t\t\t<div", at + 1)) {
        starts.push_back(at);
    }
    if (starts.empty()) {
        return html;
    }
    const size_t start =
        starts[std::uniform_int_distribution<size_t>(0, starts.size() - 1)(random)];
    const size_t end = html.find("</div>", start) + std::string_view("</div>").size();
    return html.substr(0, start) + html.substr(end);
}

TEST(LayoutRebuild, CopiesOfSpansGiveWhatParsingGave) {
    std::mt19937 random(17);
    for (int round = 0; round < 400; ++round) {
        const int columns = 2 + round % 2;
        std::string html = generatedLayout(random, columns, round % 4 < 2, round % 3);
        // A rebuilt layout is rebuilt again after a later deletion.
        for (int again = 0; again < 2; ++again) {
            bool removedBefore = false;
            const std::string before = parsedRepack(html, columns, removedBefore);
            bool removed = false;
            const std::vector<std::string_view> cells = cellsToKeep(html, removed);
            ASSERT_EQ(removed, removedBefore) << html;
            std::string now = rebuiltLayout(html.substr(0, html.find("<body>")), columns, cells);
            ASSERT_EQ(now, before) << html;
            html = withoutALine(random, now);
        }
    }
}

}  // namespace
}  // namespace loomcrest
