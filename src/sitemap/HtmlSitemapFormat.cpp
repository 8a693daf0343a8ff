#include "sitemap/HtmlSitemapFormat.h"

#include <array>
#include <charconv>

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

// Appends `text` with "&", "<" and ">" escaped, a run of plain bytes at a time.
void appendEscapedMarkup(std::string& out, std::string_view text) {
    size_t start = 0;
    for (size_t at = text.find_first_of("&<>"); at != std::string_view::npos;
         at = text.find_first_of("&<>", start)) {
        out.append(text.substr(start, at - start));
        out.append(text[at] == '&' ? "&amp;" : text[at] == '<' ? "&lt;" : "&gt;");
        start = at + 1;
    }
    out.append(text.substr(start));
}

// Appends `address` with each double quote as "%22".
void appendEscapedAddress(std::string& out, std::string_view address) {
    size_t start = 0;
    for (size_t at = address.find('"'); at != std::string_view::npos;
         at = address.find('"', start)) {
        out.append(address.substr(start, at - start)).append("%22");
        start = at + 1;
    }
    out.append(address.substr(start));
}

void appendMarkedLine(std::string& out, std::string_view divClass, std::string_view url, int linkId,
                      std::string_view title) {
    std::array<char, 16> digits{};
    const auto [end, error] = std::to_chars(digits.begin(), digits.end(), linkId);
    const std::string_view id(digits.data(), static_cast<size_t>(end - digits.begin()));
    out.append(kLineStart).append("<div class=\"").append(divClass).append("\"><a href=\"");
    appendEscapedAddress(out, url);
    out.append("---LINKID:").append(id).append("---\">");
    appendEscapedMarkup(out, title);
    out.append("<!-- LINKID: ").append(id).append(" --></a></div>");
}

}  // namespace

std::string_view htmlSitemapHead() {
    return kHead;
}

std::string pageTitleLine(std::string_view pageURL, int linkId, std::string_view title) {
    std::string line;
    appendPageTitleLine(line, pageURL, linkId, title);
    return line;
}

std::string linkLine(std::string_view linkURL, int linkId, std::string_view title) {
    std::string line;
    appendLinkLine(line, linkURL, linkId, title);
    return line;
}

void appendPageTitleLine(std::string& out, std::string_view pageURL, int linkId,
                         std::string_view title) {
    appendMarkedLine(out, "zplPageTitle", pageURL, linkId, title);
}

void appendLinkLine(std::string& out, std::string_view linkURL, int linkId,
                    std::string_view title) {
    appendMarkedLine(out, "zplPageLink", linkURL, linkId, title);
}

std::string withoutLinkMarkers(std::string_view line) {
    static const Regex comment("<!-- LINKID: .*? -->");
    static const Regex marker("---LINKID:.*?---");
    return marker.replaceAll(comment.replaceAll(line, ""), "");
}

std::string escapeMarkup(std::string_view text) {
    std::string escaped;
    escaped.reserve(text.size());
    appendEscapedMarkup(escaped, text);
    return escaped;
}

std::string escapeAddress(std::string_view address) {
    std::string escaped;
    appendEscapedAddress(escaped, address);
    return escaped;
}

PieceFrame oneColumnFrame() {
    return {"\n", kClearer};
}

PieceFrame tableFrame(int columns, int& filledCells) {
    PieceFrame frame;
    if (filledCells == 0) {
        frame.before = kRowOpening;
    }
    if (filledCells + 1 < columns) {
        frame.after = kCellSeparator;
        ++filledCells;
    } else {
        frame.after = kRowClosing;
        filledCells = 0;
    }
    return frame;
}

}  // namespace loomcrest
