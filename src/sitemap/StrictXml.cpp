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

// The parser goes on after some errors and reports the last; the first is the one to fix.
void keepFirstError(void* userData, xmlError* error) {
    auto* context = static_cast<xmlParserCtxt*>(userData);
    auto* first = static_cast<std::optional<XmlSyntaxError>*>(context->_private);
    if (error != nullptr && error->level >= XML_ERR_ERROR && first != nullptr && !*first) {
        *first = XmlSyntaxError{static_cast<size_t>(error->line > 0 ? error->line : 1),
                                withoutTrailingLineBreak(error->message)};
    }
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
    std::optional<XmlSyntaxError> firstError;
    context->_private = &firstError;
    context->sax->serror = keepFirstError;
    xmlDoc* document = xmlCtxtReadMemory(context.get(), text.data(), static_cast<int>(text.size()),
                                         nullptr, nullptr, kStrictOptions);
    if (document != nullptr && context->wellFormed != 0) {
        return StrictXmlDocument(document);
    }
    xmlFreeDoc(document);
    if (firstError) {
        return std::move(*firstError);
    }
    const xmlError* error = xmlCtxtGetLastError(context.get());
    if (error == nullptr || error->message == nullptr) {
        return XmlSyntaxError{1, "Document is empty"};
    }
    return XmlSyntaxError{static_cast<size_t>(error->line > 0 ? error->line : 1),
                          withoutTrailingLineBreak(error->message)};
}

xmlNode* StrictXmlDocument::root() const {
    return xmlDocGetRootElement(document_.get());
}

// A parse that builds no tree, so that the answer costs little memory on a big sitemap.
std::optional<XmlSyntaxError> xmlSyntaxError(std::string_view text) {
    if (text.size() > INT_MAX) {
        return XmlSyntaxError{1, "The file is too large to be read"};
    }
    xmlSAXHandler handler{};
    handler.initialized = XML_SAX2_MAGIC;
    handler.serror = [](void* userData, xmlError* error) {
        auto* first = static_cast<std::optional<XmlSyntaxError>*>(userData);
        if (error != nullptr && error->level >= XML_ERR_ERROR && !*first) {
            *first = XmlSyntaxError{static_cast<size_t>(error->line > 0 ? error->line : 1),
                                    withoutTrailingLineBreak(error->message)};
        }
    };
    std::optional<XmlSyntaxError> firstError;
    const int status =
        xmlSAXUserParseMemory(&handler, &firstError, text.data(), static_cast<int>(text.size()));
    if (status != 0 && !firstError) {
        return XmlSyntaxError{1, "Document is empty"};
    }
    return firstError;
}

}  // namespace loomcrest
