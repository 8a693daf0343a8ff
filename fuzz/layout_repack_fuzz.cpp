// The re-pack of a table layout after deletions. The bytes choose a layout as a scan writes it
// (columns, pages, links, and odd titles and addresses) and the lines deleted from it. The
// re-pack copies cells and lines as spans of the text; the layout it gives must be the one got
// by parsing the layout and serialising every cell and line with the parser, laid out by the
// same code. A difference stops the fuzzer.
#include <cstdlib>
#include <string>
#include <vector>

#include "FuzzInput.h"
#include "editors/LayoutRebuild.h"
#include "platform/HtmlDocument.h"
#include "platform/Text.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/SitemapFiles.h"

namespace {

using namespace loomcrest;

// Takes the bytes one at a time as choices; past their end every choice is the first one.
class Choices {
public:
    explicit Choices(std::string_view bytes) : bytes_(bytes) {}
    size_t below(size_t count) {
        return used_ < bytes_.size() ? static_cast<uint8_t>(bytes_[used_++]) % count : 0;
    }
    template <typename T>
    const T& of(const std::vector<T>& items) {
        return items[below(items.size())];
    }

private:
    std::string_view bytes_;
    size_t used_ = 0;
};

std::string rebuilt(std::string_view html, int columns, const std::vector<std::string>& cells) {
    const std::vector<std::string_view> views(cells.begin(), cells.end());
    return rebuiltLayout(html.substr(0, html.find("<body>")), columns, views);
}

// The re-pack with every cell and every line of a cell serialised by the parser.
std::string parsedRepack(std::string_view html, int columns, bool& removedAny) {
    removedAny = false;
    std::vector<std::string> cells;
    const auto document = MarkupDocument::parseHtml(html);
    for (const MarkupNode& cell : document->select("//td")) {
        cells.push_back(cell.markup());
    }
    // After an erase the next cell moves into place and is passed over unchecked, as the
    // editor's own walk passes it.
    for (size_t i = 0; i < cells.size(); ++i) {
        if (!containsIgnoringCase(cells[i], "<div ")) {
            cells.erase(cells.begin() + static_cast<std::ptrdiff_t>(i));
            removedAny = true;
        }
    }
    std::vector<std::string> lines;
    for (const std::string& cell : cells) {
        std::string text = "<td>";
        if (const auto parsedCell = MarkupDocument::parseHtml(cell)) {
            for (const MarkupNode& div : parsedCell->select("//div")) {
                text += "\n\t\t\t" + div.markup();
            }
        }
        lines.push_back(text + "</td>");
    }
    return rebuilt(html, columns, lines);
}

const std::vector<std::string> kTitles = {"Home",
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
const std::vector<std::string> kAddresses = {"http://h/p.html", "http://h/d/q.php?id=4;x=1",
                                             "http://h/%7Euser/", "http://h/a-b_c.html#top",
                                             "https://other.example/x+y,z@w"};

// A layout of `columns` as a scan writes it, with some of its lines deleted again.
std::string scannedLayout(Choices& choose, int columns) {
    const bool pagesOnly = choose.below(2) == 0;
    std::string html = std::string(htmlSitemapHead()) + std::string(kTableOpening);
    std::vector<std::string> lines;
    int filled = 0;
    int number = 0;
    const size_t pages = 1 + choose.below(9);
    for (size_t page = 0; page < pages; ++page) {
        std::string item = pageTitleLine(choose.of(kAddresses), number, choose.of(kTitles));
        lines.push_back(item);
        const size_t links = pagesOnly ? 0 : choose.below(4);
        for (size_t link = 0; link < links; ++link) {
            lines.push_back(linkLine(choose.of(kAddresses), ++number, choose.of(kTitles)));
            item += lines.back();
        }
        const PieceFrame frame = tableFrame(columns, filled);
        html += std::string(frame.before) + item + std::string(frame.after);
        ++number;
    }
    html += columns == 2 ? twoColumnClosing(filled) : threeColumnClosing(filled);
    for (size_t deleted = choose.below(3); deleted > 0 && !lines.empty(); --deleted) {
        const size_t gone = choose.below(lines.size());
        html = replaceAll(html, lines[gone], "");
        lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(gone));
    }
    return html;
}

// `html` less one of its lines, as a deletion in the editor takes it out.
std::string withoutALine(Choices& choose, const std::string& html) {
    std::vector<size_t> starts;
    for (size_t at = html.find("\n\t\t\t<div"); at != std::string::npos;
         at = html.find("\n\t\t\t<div", at + 1)) {
        starts.push_back(at);
    }
    if (starts.empty()) {
        return html;
    }
    const size_t start = choose.of(starts);
    const size_t end = html.find("</div>", start) + std::string_view("</div>").size();
    return html.substr(0, start) + html.substr(end);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Choices choose(fuzz::asText(data, size));
    const int columns = 2 + static_cast<int>(choose.below(2));
    std::string html = scannedLayout(choose, columns);
    // A re-packed layout is re-packed again after a later deletion.
    for (int again = 0; again < 2; ++again) {
        bool removedByParsing = false;
        const std::string parsed = parsedRepack(html, columns, removedByParsing);
        bool removed = false;
        const std::vector<std::string_view> cells = cellsToKeep(html, removed);
        const std::string now = rebuiltLayout(html.substr(0, html.find("<body>")), columns, cells);
        if (removed != removedByParsing || now != parsed) {
            std::abort();
        }
        html = withoutALine(choose, now);
    }
    return 0;
}
