#include "editors/LayoutRebuild.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

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

// A cell as cellsToKeep serialises it.
std::string cell(const std::string& lines) {
    return "<td>" + lines + "\n\t\t</td>";
}

TEST(LayoutRebuild, CellWalkDropsEmptyCellsButSkipsTheOneThatMovedUp) {
    bool removed = true;
    EXPECT_EQ(cellsToKeep("", removed), std::vector<std::string>{});
    EXPECT_FALSE(removed);

    const std::string full = layout(row({line(kP1), line(kP2)}), kTableEnd);
    EXPECT_EQ(cellsToKeep(full, removed),
              (std::vector<std::string>{cell(line(kP1)), cell(line(kP2))}));
    EXPECT_FALSE(removed);

    const std::string lastEmpty = layout(row({line(kP1), line(kP2), ""}), kTableEnd);
    EXPECT_EQ(cellsToKeep(lastEmpty, removed),
              (std::vector<std::string>{cell(line(kP1)), cell(line(kP2))}));
    EXPECT_TRUE(removed);

    const std::string twoEmpty =
        layout(row({line(kP1), "", ""}) + row({line(kP4), line(kP5), line(kP6)}), kTableEnd);
    EXPECT_EQ(cellsToKeep(twoEmpty, removed),
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
    EXPECT_EQ(cells, (std::vector<std::string>{cell(line(kP1)), cell(line(kP2)), cell(line(kP3)),
                                               cell(line(kP4)), cell(line(kP6)), cell(line(kP7)),
                                               "<td>\xC2\xA0</td>"}));
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

    EXPECT_EQ(rebuiltLayout(kHead, 3, {cell(line(kP1))}),
              kHead + kTableStart + "\n\t<tr valign=\"top\">\n\t\t<td width=\"32%\">\n\t\t\t" +
                  kP1 +
                  "\n\t\t</td>\n\t\t<td width=\"32%\">\n\t\t\t&nbsp;\n\t\t</td>"
                  "\n\t\t<td width=\"32%\">\n\t\t\t&nbsp;\n\t\t</td>\n\t</tr>"
                  "\n</table>\n</body>\n</html>");
    EXPECT_EQ(rebuiltLayout(kHead, 3, {}), kHead + kTableStart + "\n</table>\n</body>\n</html>");
}

TEST(LayoutRebuild, ThreeColumnsDropALastRowWhoseOnlyCellIsEmpty) {
    EXPECT_EQ(
        rebuiltLayout(kHead, 3, {cell(line(kP1)), cell(line(kP2)), cell(line(kP3)), cell("")}),
        kHead + kTableStart + "\n\t<tr valign=\"top\">\n\t\t<td width=\"32%\">\n\t\t\t" + kP1 +
            "\n\t\t</td>\n\t\t<td width=\"32%\">\n\t\t\t" + kP2 +
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
    EXPECT_EQ(cells, (std::vector<std::string>{cell(line(kP1)), cell(line(kP2)), cell(line(kP3)),
                                               cell(line(kP4)), "<td>\xC2\xA0</td>"}));
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
    EXPECT_EQ(rebuiltLayout(kHead, 1, {cell(line(kP1) + line(kP2)), cell(line(kP3))}),
              kHead + kTableStart + "\n\t<tr valign=\"top\">\n\t\t<td>\n\t\t\t" + kP1 + "\n\t\t\t" +
                  kP2 +
                  "\n\t\t</td>\n\t</tr>"
                  "\n\t<tr valign=\"top\">\n\t\t<td>\n\t\t\t" +
                  kP3 +
                  "\n\t\t</td>\n\t</tr>"
                  "\n</table>\n</body>\n</html>");
}

TEST(LayoutRebuild, LinesSurviveSerialisationByteForByte) {
    const std::string link =
        "<div class=\"zplPageLink\"><a href=\"http://h/caf%C3%A9.html---LINKID:12---\">Caf\xC3\xA9 "
        "&amp; \"Bar\"<!-- LINKID: 12 --></a></div>";
    const std::string scanned = layout(row({line(kP2) + line(link), ""}), kTableEnd);
    bool removed = false;
    const auto cells = cellsToKeep(scanned, removed);
    EXPECT_EQ(cells, std::vector<std::string>{cell(line(kP2) + line(link))});
    EXPECT_EQ(rebuiltLayout("<html>\n", 1, cells),
              "<html>\n" + kTableStart + "\n\t<tr valign=\"top\">\n\t\t<td>\n\t\t\t" + kP2 +
                  "\n\t\t\t" + link + "\n\t\t</td>\n\t</tr>\n</table>\n</body>\n</html>");

    // Text without a declared character set is read as UTF-8 all the same.
    EXPECT_EQ(cellsToKeep("<table><tr><td>" + line(link) + "\n\t\t</td></tr></table>", removed),
              std::vector<std::string>{cell(line(link))});
}

}  // namespace
}  // namespace loomcrest
