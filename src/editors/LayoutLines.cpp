#include "editors/LayoutLines.h"

#include <algorithm>
#include <cctype>

#include "platform/HtmlDocument.h"
#include "sitemap/LayoutMarkup.h"

namespace loomcrest {

namespace {

using namespace layoutmarkup;

bool allDigits(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return std::isdigit(static_cast<unsigned char>(c)) != 0;
    });
}

// The line that starts at `at` and ends before `limit`, when it is well formed.
std::optional<MarkedLine> lineAt(std::string_view html, size_t at, size_t limit) {
    MarkedLine line;
    size_t hrefStart = at + kLineDivStart.size();
    const std::string_view rest = html.substr(hrefStart);
    if (rest.starts_with(kTitleDivRest)) {
        line.isTitle = true;
        hrefStart += kTitleDivRest.size();
    } else if (rest.starts_with(kLinkDivRest)) {
        hrefStart += kLinkDivRest.size();
    } else {
        return std::nullopt;
    }
    const size_t hrefEnd = html.find(kLinkIdHrefEnd, hrefStart);
    if (hrefEnd >= limit) {
        return std::nullopt;
    }
    const size_t marker = html.rfind(kLinkIdMarker, hrefEnd);
    if (marker == std::string_view::npos || marker < hrefStart) {
        return std::nullopt;
    }
    line.linkId =
        html.substr(marker + kLinkIdMarker.size(), hrefEnd - marker - kLinkIdMarker.size());
    const size_t titleStart = hrefEnd + kLinkIdHrefEnd.size();
    const size_t comment = html.find(kLinkIdComment, titleStart);
    if (!allDigits(line.linkId) || comment >= limit) {
        return std::nullopt;
    }
    const size_t commentNumber = comment + kLinkIdComment.size();
    const size_t commentEnd = html.find(kLineEnd, commentNumber);
    if (commentEnd >= limit || !allDigits(html.substr(commentNumber, commentEnd - commentNumber))) {
        return std::nullopt;
    }
    line.href = html.substr(hrefStart, hrefEnd + layoutmarkup::kLinkIdMarkerEnd.size() - hrefStart);
    line.address = html.substr(hrefStart, marker - hrefStart);
    line.title = html.substr(titleStart, comment - titleStart);
    return line;
}

}  // namespace

void forEachMarkedLine(std::string_view html, const std::function<bool(const MarkedLine&)>& visit) {
    size_t at = html.find(kLineDivStart);
    while (at != std::string_view::npos) {
        const size_t next = html.find(kLineDivStart, at + kLineDivStart.size());
        if (const auto line = lineAt(html, at, std::min(next, html.size()));
            line && !visit(*line)) {
            return;
        }
        at = next;
    }
}

std::vector<MarkedLine> markedLines(std::string_view html, size_t limit) {
    std::vector<MarkedLine> lines;
    if (limit > 0) {
        forEachMarkedLine(html, [&](const MarkedLine& line) {
            lines.push_back(line);
            return lines.size() < limit;
        });
    }
    return lines;
}

ClickedLink clickedLink(const MarkedLine& line) {
    return {htmlAttributeValue(line.href), htmlTextContent(line.title)};
}

}  // namespace loomcrest
