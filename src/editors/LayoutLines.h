#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

// The marked lines of an HTML sitemap layout, found in one pass over its text:
// <div class="zplPageTitle|zplPageLink"><a href="ADDRESS---LINKID:N---">TITLE<!-- LINKID: N
// --></a></div>. A title may run over several lines of text.
namespace loomcrest {

struct MarkedLine {
    bool isTitle = false;
    std::string_view href;     // the attribute as written, marker included
    std::string_view address;  // the attribute as written, up to its marker
    std::string_view linkId;
    std::string_view title;  // the anchor's content as written, up to the marker comment
};

// Each line in document order, until `visit` answers false; the views point into `html`.
void forEachMarkedLine(std::string_view html, const std::function<bool(const MarkedLine&)>& visit);
// The first `limit` lines, or all.
std::vector<MarkedLine> markedLines(std::string_view html, size_t limit = SIZE_MAX);

// What a click on the line reports: the address as the browser reads the attribute and the
// label it shows, character references decoded.
struct ClickedLink {
    std::string address;
    std::string label;
};
ClickedLink clickedLink(const MarkedLine& line);

}  // namespace loomcrest
