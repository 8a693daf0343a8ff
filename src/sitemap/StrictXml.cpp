#include "sitemap/StrictXml.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <climits>

namespace loomcrest {

namespace {

// Errors are read from the context, never printed; line numbers go past 65,535.
constexpr int kStrictOptions =
    XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_BIG_LINES;

struct ContextDeleter {
    void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
};

std::string withoutTrailingLineBreak(const char* message) {
    std::string text = message == nullptr ? "" : message;
    while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) {
        text.pop_back();
    }
    return text;
}

}  // namespace

void StrictXmlDocument::Deleter::operator()(xmlDoc* document) const {
    xmlFreeDoc(document);
}

std::variant<StrictXmlDocument, XmlSyntaxError> StrictXmlDocument::parse(std::string_view text) {
    if (text.size() > INT_MAX) {
        return XmlSyntaxError{1, "The file is too large to be read"};
    }
    const std::unique_ptr<xmlParserCtxt, ContextDeleter> context(xmlNewParserCtxt());
    if (!context) {
        return XmlSyntaxError{1, "The XML parser could not be started"};
    }
    xmlDoc* document = xmlCtxtReadMemory(context.get(), text.data(), static_cast<int>(text.size()),
                                         nullptr, nullptr, kStrictOptions);
    if (document != nullptr && context->wellFormed != 0) {
        return StrictXmlDocument(document);
    }
    xmlFreeDoc(document);
    const xmlError* error = xmlCtxtGetLastError(context.get());
    if (error == nullptr) {
        return XmlSyntaxError{1, "Document is empty"};
    }
    return XmlSyntaxError{static_cast<size_t>(error->line > 0 ? error->line : 1),
                          withoutTrailingLineBreak(error->message)};
}

xmlNode* StrictXmlDocument::root() const {
    return xmlDocGetRootElement(document_.get());
}

std::optional<XmlSyntaxError> xmlSyntaxError(std::string_view text) {
    auto parsed = StrictXmlDocument::parse(text);
    if (auto* error = std::get_if<XmlSyntaxError>(&parsed)) {
        return std::move(*error);
    }
    return std::nullopt;
}

}  // namespace loomcrest
