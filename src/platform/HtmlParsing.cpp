#include "platform/HtmlParsing.h"

#include <libxml/HTMLparser.h>
#include <libxml/parserInternals.h>

#include <climits>

#include "platform/Text.h"

namespace loomcrest::markup {

namespace {

constexpr int kHtmlOptions =
    HTML_PARSE_RECOVER | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | HTML_PARSE_NONET;
// No start tag is longer than this; a search back for one stops here.
constexpr size_t kLongestStartTag = size_t{64} * 1024;

}  // namespace

void ContextDeleter::operator()(xmlParserCtxt* context) const {
    if (context->html != 0) {
        htmlFreeParserCtxt(context);
    } else {
        xmlFreeParserCtxt(context);
    }
}

ParserContext newHtmlParser(std::string_view bytes) {
    if (bytes.empty() || bytes.size() > INT_MAX) {
        return nullptr;
    }
    ParserContext context(htmlCreateMemoryParserCtxt(bytes.data(), static_cast<int>(bytes.size())));
    if (!context || context->sax == nullptr) {
        return nullptr;
    }
    // A body that declares no encoding is UTF-8; without this libxml2 would read it as
    // Latin-1. One that declares another encoding is still read in that one.
    htmlCtxtUseOptions(context.get(), kHtmlOptions);
    xmlSwitchEncoding(context.get(), XML_CHAR_ENCODING_UTF8);
    return context;
}

size_t inputPosition(const xmlParserCtxt& context) {
    if (context.input == nullptr) {
        return 0;
    }
    return static_cast<size_t>(context.input->consumed) +
           static_cast<size_t>(context.input->cur - context.input->base);
}

std::optional<std::string> startTagIn(std::string_view source, std::string_view name,
                                      size_t tagEnd) {
    const std::string opening = "<" + std::string(name);
    if (tagEnd > source.size() || tagEnd < opening.size()) {
        return std::nullopt;
    }
    const size_t closing = source.find('>', tagEnd);
    if (closing == std::string_view::npos) {
        return std::nullopt;
    }
    // Walk back from the reported position to the "<" that opens a tag of this name.
    for (size_t start = source.rfind('<', tagEnd); start != std::string_view::npos;
         start = start == 0 ? std::string_view::npos : source.rfind('<', start - 1)) {
        if (equalsIgnoringCase(source.substr(start, opening.size()), opening)) {
            return std::string(source.substr(start, closing + 1 - start));
        }
        if (tagEnd - start > kLongestStartTag) {
            break;
        }
    }
    return std::nullopt;
}

}  // namespace loomcrest::markup
