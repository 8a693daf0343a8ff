#include "editors/LayoutRebuild.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <random>
#include <string>
#include <vector>

#include "platform/HtmlDocument.h"
#include "platform/Text.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/SitemapFiles.h"

namespace loomcrest {
namespace {

const std::string kHead =
    "<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Transitional//EN\" "
    "\"http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd\">\n"
    "<html xmlns=\"http://www.w3.org/1999/xhtml\" xml:lang=\"en\" lang=\"en\">\n"
    "<head>\n"
    "\t<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\"/>\n"
    "\t<title>Sitemap</title>\n"
    "</head>\n";
const std::string kTableStart = "<body>\n<table width=\"100%\" border=\"0\" cellpadding=\"10\">";
const std::string kTableEnd = "\n</table>\n</body>\n</html>";

// Lines as a scan writes them, without the line feed and tabs in front.
const std::string kP1 =
    "<div class=\"zplPageTitle\"><a href=\"http://h/---LINKID:1---\">Home<!-- LINKID: 1 --></a>"
    "</div>";
const std::string kP2 =
    "<div class=\"zplPageLink\"><a href=\"http://h/a.html---LINKID:2---\">About &amp; us"
    "<!-- LINKID: 2 --></a></div>";
const std::string kP3 =
    "<div class=\"zplPageTitle\"><a href=\"http://h/b.html?x=1&amp;y=2---LINKID:3---\">B"
    "<!-- LINKID: 3 --></a></div>";
const std::string kP4 =
    "<div class=\"zplPageTitle\"><a href=\"http://h/c.html---LINKID:4---\">C<!-- LINKID: 4 -->"
    "</a></div>";
const std::string kP5 =
    "<div class=\"zplPageTitle\"><a href=\"http://h/d.html---LINKID:5---\">D<!-- LINKID: 5 -->"
    "</a></div>";
const std::string kP6 =
    "<div class=\"zplPageLink\"><a href=\"http://h/e.html---LINKID:6---\">E<!-- LINKID: 6 -->"
    "</a></div>";
const std::string kP7 =
    "<div class=\"zplPageTitle\"><a href=\"http://h/f.html---LINKID:7---\">F<!-- LINKID: 7 -->"
    "</a></div>";

std::string line(const std::string& div) {
    return "\n\t\t\t" + div;
}

// A full table row as a scan writes it; an empty item is a cell whose lines were deleted.
std::string row(std::initializer_list<std::string> items) {
    std::string text = "\n\t<tr valign=\"top\">\n\t\t<td>";
    bool first = true;
    for (const std::string& item : items) {
        text += (first ? "" : "\n\t\t</td>\n\t\t<td>") + item;
        first = false;
    }
    return text + "\n\t\t</td>\n\t</tr>";
}

std::string layout(const std::string& rows, const std::string& closing) {
    return kHead + kTableStart + rows + closing;
}

// A cell as a scan writes it.
std::string cell(const std::string& lines) {
    return "<td>" + lines + "\n\t\t</td>";
}

std::vector<std::string> texts(const std::vector<std::string_view>& cells) {
    return {cells.begin(), cells.end()};
}

std::string rebuilt(std::string_view head, int columns, const std::vector<std::string>& cells) {
    const std::vector<std::string_view> views(cells.begin(), cells.end());
    return rebuiltLayout(head, columns, views);
}

TEST(LayoutRebuild, CellWalkDropsEmptyCellsButSkipsTheOneThatMovedUp) {
    bool removed = true;
    EXPECT_EQ(texts(cellsToKeep("", removed)), std::vector<std::string>{});
    EXPECT_FALSE(removed);

    const std::string full = layout(row({line(kP1), line(kP2)}), kTableEnd);
    EXPECT_EQ(texts(cellsToKeep(full, removed)),
              (std::vector<std::string>{cell(line(kP1)), cell(line(kP2))}));
    EXPECT_FALSE(removed);

    const std::string lastEmpty = layout(row({line(kP1), line(kP2), ""}), kTableEnd);
    EXPECT_EQ(texts(cellsToKeep(lastEmpty, removed)),
              (std::vector<std::string>{cell(line(kP1)), cell(line(kP2))}));
    EXPECT_TRUE(removed);

    const std::string twoEmpty =
        layout(row({line(kP1), "", ""}) + row({line(kP4), line(kP5), line(kP6)}), kTableEnd);
    EXPECT_EQ(texts(cellsToKeep(twoEmpty, removed)),
              (std::vector<std::string>{cell(line(kP1)), "<td>\n\t\t</td>", cell(line(kP4)),
                                        cell(line(kP5)), cell(line(kP6))}));
    EXPECT_TRUE(removed);
}

TEST(LayoutRebuild, ThreeColumnsRepackAfterTheFifthOfSevenCellsEmptied) {
    const std::string scanned =
        layout(row({line(kP1), line(kP2), line(kP3)}) + row({line(kP4), "", line(kP6)}) +
                   "\n\t<tr valign=\"top\">\n\t\t<td>" + line(kP7) + "\n\t\t</td>\n\t\t<td>",
               "&nbsp;</td>\n\t\t<td>&nbsp;</td>\n\t</tr>\n</table>\n</body>\n</html>");
    bool removed = false;
    const auto cells = cellsToKeep(scanned, removed);
    EXPECT_TRUE(removed);
    // The second padding cell moved into the place of the first and was skipped.
    EXPECT_EQ(texts(cells), (std::vector<std::string>{
                                cell(line(kP1)), cell(line(kP2)), cell(line(kP3)), cell(line(kP4)),
                                cell(line(kP6)), cell(line(kP7)), "<td>&nbsp;</td>"}));
    // Its row, one empty cell and two fillers, is taken out again, all but "\n\t".
    EXPECT_EQ(rebuiltLayout(kHead, 3, cells),
              kHead + kTableStart + "\n\t<tr valign=\"top\">\n\t\t<td width=\"32%\">\n\t\t\t" +
                  kP1 + "\n\t\t</td>\n\t\t<td width=\"32%\">\n\t\t\t" + kP2 +
                  "\n\t\t</td>\n\t\t<td width=\"32%\">\n\t\t\t" + kP3 +
                  "\n\t\t</td>\n\t</tr>"
                  "\n\t<tr valign=\"top\">\n\t\t<td width=\"32%\">\n\t\t\t" +
                  kP4 + "\n\t\t</td>\n\t\t<td width=\"32%\">\n\t\t\t" + kP6 +
                  "\n\t\t</td>\n\t\t<td width=\"32%\">\n\t\t\t" + kP7 +
                  "\n\t\t</td>\n\t</tr>"
                  "\n\t"
                  "\n</table>\n</body>\n</html>");
}

TEST(LayoutRebuild, ThreeColumnsFillTheLastRow) {
    const std::string scanned =
        layout(row({line(kP1), line(kP2), line(kP3)}) + row({line(kP4), line(kP5), ""}), kTableEnd);
    bool removed = false;
    EXPECT_EQ(rebuiltLayout(kHead, 3, cellsToKeep(scanned, removed)),
              kHead + kTableStart + "\n\t<tr valign=\"top\">\n\t\t<td width=\"32%\">\n\t\t\t" +
                  kP1 + "\n\t\t</td>\n\t\t<td width=\"32%\">\n\t\t\t" + kP2 +
                  "\n\t\t</td>\n\t\t<td width=\"32%\">\n\t\t\t" + kP3 +
                  "\n\t\t</td>\n\t</tr>"
                  "\n\t<tr valign=\"top\">\n\t\t<td width=\"32%\">\n\t\t\t" +
                  kP4 + "\n\t\t</td>\n\t\t<td width=\"32%\">\n\t\t\t" + kP5 +
                  "\n\t\t</td>\n\t\t<td width=\"32%\">\n\t\t\t&nbsp;\n\t\t</td>\n\t</tr>"
                  "\n</table>\n</body>\n</html>");
    EXPECT_TRUE(removed);

    EXPECT_EQ(rebuilt(kHead, 3, {cell(line(kP1))}),
              kHead + kTableStart + "\n\t<tr valign=\"top\">\n\t\t<td width=\"32%\">\n\t\t\t" +
                  kP1 +
                  "\n\t\t</td>\n\t\t<td width=\"32%\">\n\t\t\t&nbsp;\n\t\t</td>"
                  "\n\t\t<td width=\"32%\">\n\t\t\t&nbsp;\n\t\t</td>\n\t</tr>"
                  "\n</table>\n</body>\n</html>");
    EXPECT_EQ(rebuiltLayout(kHead, 3, {}), kHead + kTableStart + "\n</table>\n</body>\n</html>");
}

TEST(LayoutRebuild, ThreeColumnsDropALastRowWhoseOnlyCellIsEmpty) {
    EXPECT_EQ(rebuilt(kHead, 3, {cell(line(kP1)), cell(line(kP2)), cell(line(kP3)), cell("")}),
              kHead + kTableStart + "\n\t<tr valign=\"top\">\n\t\t<td width=\"32%\">\n\t\t\t" +
                  kP1 + "\n\t\t</td>\n\t\t<td width=\"32%\">\n\t\t\t" + kP2 +
                  "\n\t\t</td>\n\t\t<td width=\"32%\">\n\t\t\t" + kP3 +
                  "\n\t\t</td>\n\t</tr>"
                  "\n\t"
                  "\n</table>\n</body>\n</html>");
}

TEST(LayoutRebuild, TwoColumnsEndAnOddCountWithANarrowFiller) {
    const std::string scanned =
        layout(row({line(kP1), line(kP2)}) + row({"", line(kP4)}), kTableEnd);
    bool removed = false;
    EXPECT_EQ(rebuiltLayout(kHead, 2, cellsToKeep(scanned, removed)),
              kHead + kTableStart + "\n\t<tr valign=\"top\">\n\t\t<td width=\"49%\">\n\t\t\t" +
                  kP1 + "\n\t\t</td>\n\t\t<td width=\"49%\">\n\t\t\t" + kP2 +
                  "\n\t\t</td>\n\t</tr>"
                  "\n\t<tr valign=\"top\">\n\t\t<td width=\"49%\">\n\t\t\t" +
                  kP4 +
                  "\n\t\t</td>\n\t\t<td width=\"32%\">\n\t\t\t&nbsp;\n\t\t</td>\n\t</tr>"
                  "\n</table>\n</body>\n</html>");
    EXPECT_TRUE(removed);
}

TEST(LayoutRebuild, TwoColumnsKeepARowWhoseOnlyCellIsEmpty) {
    const std::string scanned = layout(row({line(kP1), line(kP2)}) + row({line(kP3), line(kP4)}) +
                                           "\n\t<tr valign=\"top\">\n\t\t<td>\n\t\t</td>\n\t\t<td>",
                                       "&nbsp;</td>\n\t</tr>\n</table>\n</body>\n</html>");
    bool removed = false;
    const auto cells = cellsToKeep(scanned, removed);
    EXPECT_TRUE(removed);
    EXPECT_EQ(texts(cells),
              (std::vector<std::string>{cell(line(kP1)), cell(line(kP2)), cell(line(kP3)),
                                        cell(line(kP4)), "<td>&nbsp;</td>"}));
    EXPECT_EQ(rebuiltLayout(kHead, 2, cells),
              kHead + kTableStart + "\n\t<tr valign=\"top\">\n\t\t<td width=\"49%\">\n\t\t\t" +
                  kP1 + "\n\t\t</td>\n\t\t<td width=\"49%\">\n\t\t\t" + kP2 +
                  "\n\t\t</td>\n\t</tr>"
                  "\n\t<tr valign=\"top\">\n\t\t<td width=\"49%\">\n\t\t\t" +
                  kP3 + "\n\t\t</td>\n\t\t<td width=\"49%\">\n\t\t\t" + kP4 +
                  "\n\t\t</td>\n\t</tr>"
                  "\n\t<tr valign=\"top\">\n\t\t<td width=\"49%\">"
                  "\n\t\t</td>\n\t\t<td width=\"32%\">\n\t\t\t&nbsp;\n\t\t</td>\n\t</tr>"
                  "\n</table>\n</body>\n</html>");
}

TEST(LayoutRebuild, OneColumnPutsEachCellInARowOfItsOwn) {
    EXPECT_EQ(rebuilt(kHead, 1, {cell(line(kP1) + line(kP2)), cell(line(kP3))}),
              kHead + kTableStart + "\n\t<tr valign=\"top\">\n\t\t<td>\n\t\t\t" + kP1 + "\n\t\t\t" +
                  kP2 +
                  "\n\t\t</td>\n\t</tr>"
                  "\n\t<tr valign=\"top\">\n\t\t<td>\n\t\t\t" +
                  kP3 +
                  "\n\t\t</td>\n\t</tr>"
                  "\n</table>\n</body>\n</html>");
}

TEST(LayoutRebuild, LinesKeepTheirBytes) {
    const std::string link =
        "<div class=\"zplPageLink\"><a href=\"http://h/caf%C3%A9.html?a=1&b=2---LINKID:12---\">"
        "Caf\xC3\xA9 &amp; &lt;b&gt; \"Bar\"\n\xC2\xA0x<!-- LINKID: 12 --></a></div>";
    const std::string scanned = layout(row({line(kP2) + line(link), ""}), kTableEnd);
    bool removed = false;
    const auto cells = cellsToKeep(scanned, removed);
    EXPECT_EQ(texts(cells), std::vector<std::string>{cell(line(kP2) + line(link))});
    EXPECT_EQ(rebuiltLayout("<html>\n", 1, cells),
              "<html>\n" + kTableStart + "\n\t<tr valign=\"top\">\n\t\t<td>\n\t\t\t" + kP2 +
                  "\n\t\t\t" + link + "\n\t\t</td>\n\t</tr>\n</table>\n</body>\n</html>");

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

// `html` without one of its lines, picked at random.
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
