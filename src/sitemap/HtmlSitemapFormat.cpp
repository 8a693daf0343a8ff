#include "sitemap/HtmlSitemapFormat.h"

#include "platform/Regex.h"
#include "platform/Text.h"
#include "sitemap/LayoutMarkup.h"

namespace loomcrest {

namespace {

constexpr std::string_view kHead =
    "<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Transitional//EN\" "
    "\"http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd\">\n"
    "<html xmlns=\"http://www.w3.org/1999/xhtml\" xml:lang=\"en\" lang=\"en\">\n"
    "<head>\n"
    "\t<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\"/>\n"
    "\t<title>Sitemap</title>\n"
    "<style type=\"text/css\">\n"
    "\t<!--\n"
    "\t.zplPageTitle a:active { text-decoration:none }\n"
    "\t.zplPageTitle a:link { text-decoration:none }\n"
    "\t.zplPageTitle a:visited { text-decoration:none }\n"
    "\t.zplPageTitle a:hover { text-decoration:underline }\n"
    "\n"
    "\t.zplPageLink a:active { text-decoration:none }\n"
    "\t.zplPageLink a:link { text-decoration:none }\n"
    "\t.zplPageLink a:visited { text-decoration:none }\n"
    "\t.zplPageLink a:hover { text-decoration:underline }\n"
    "\n"
    "\t.zplPageTitle a {\n"
    "\t\tfont-family: Times New Roman, Times, serif;\n"
    "\t\tfont-weight: bold;\n"
    "\t\tfont-style: normal;\n"
    "\t\tcolor: #000000;\n"
    "\t\tfont-size: 1.1em;\n"
    "\t}\n"
    "\n"
    "\t.zplPageLink a {\n"
    "\t\tfont-weight: normal;\n"
    "\t\tfont-style: normal;\n"
    "\t\tfont-family: Times New Roman, Times, serif;\n"
    "\t\tfont-size: 1em;\n"
    "\t\tmargin-left: 20px;\n"
    "\t\tcolor: #0000FF;\n"
    "\t}\n"
    "\n"
    ".clearer {\n"
    "\tclear: both;\n"
    "}\n"
    "\n"
    ".zplPageTitleBroken a {\n"
    "\tfont-family: Times New Roman, Times, serif;\n"
    "\tfont-weight: bold;\n"
    "\tfont-style: normal;\n"
    "\tcolor: #ff0000;\n"
    "\tfont-size: 1.1em;\n"
    "\t}\n"
    "-->\n"
    "</style>\n"
    "</head>\n"
    "<body>\n";

using namespace layoutmarkup;

std::string markedLine(std::string_view divClass, std::string_view url, int linkId,
                       std::string_view title) {
    const std::string id = std::to_string(linkId);
    std::string line(kLineStart);
    line.append("<div class=\"")
        .append(divClass)
        .append("\"><a href=\"")
        .append(escapeAddress(url));
    line.append("---LINKID:").append(id).append("---\">").append(escapeMarkup(title));
    line.append("<!-- LINKID: ").append(id).append(" --></a></div>");
    return line;
}

}  // namespace

std::string_view htmlSitemapHead() {
    return kHead;
}

std::string pageTitleLine(std::string_view pageURL, int linkId, std::string_view title) {
    return markedLine("zplPageTitle", pageURL, linkId, title);
}

std::string linkLine(std::string_view linkURL, int linkId, std::string_view title) {
    return markedLine("zplPageLink", linkURL, linkId, title);
}

std::string withoutLinkMarkers(std::string_view line) {
    static const Regex comment("<!-- LINKID: .*? -->");
    static const Regex marker("---LINKID:.*?---");
    return marker.replaceAll(comment.replaceAll(line, ""), "");
}

std::string escapeMarkup(std::string_view text) {
    std::string escaped;
    escaped.reserve(text.size());
    for (const char c : text) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}

std::string escapeAddress(std::string_view address) {
    return replaceAll(address, "\"", "%22");
}

std::string oneColumnPiece(std::string_view item) {
    return "\n" + std::string(item) + std::string(kClearer);
}

std::string tablePiece(std::string_view item, int columns, int& filledCells) {
    std::string piece;
    if (filledCells == 0) {
        piece.append(kRowOpening);
    }
    piece.append(item);
    if (filledCells + 1 < columns) {
        piece.append(kCellSeparator);
        ++filledCells;
    } else {
        piece.append(kRowClosing);
        filledCells = 0;
    }
    return piece;
}

}  // namespace loomcrest
