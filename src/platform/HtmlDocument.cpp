#include "platform/HtmlDocument.h"

#include <libxml/HTMLparser.h>
#include <libxml/HTMLtree.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>
#include <libxml/xpath.h>

#include <libxml/SAX2.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <climits>
#include <cstdint>

#include "platform/HtmlParsing.h"
#include "platform/LargeText.h"

namespace loomcrest {

namespace {

struct XPathContextDeleter {
    void operator()(xmlXPathContext* context) const { xmlXPathFreeContext(context); }
};
struct XPathObjectDeleter {
    void operator()(xmlXPathObject* object) const { xmlXPathFreeObject(object); }
};

const xmlChar* asXmlChars(const std::string& text) {
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

std::string fromXmlChars(const xmlChar* text) {
    return text == nullptr ? std::string() : std::string(reinterpret_cast<const char*>(text));
}

std::string takeXmlChars(xmlChar* text) {
    const std::unique_ptr<xmlChar, markup::XmlCharDeleter> owned(text);
    return fromXmlChars(owned.get());
}

constexpr int kXmlOptions =
    XML_PARSE_RECOVER | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NONET;

// The parser calls its start-element handler right after the start tag's attributes, so
// the input position then marks the end of the tag. Recording it lets the node's source
// markup be cut out later with its original quoting and letter case. The position is kept,
// plus one, in the node's field for the application's own data, so that no other storage
// is needed for every element.
void recordStartTagEnd(xmlParserCtxt* context) {
    if (context->node == nullptr || context->input == nullptr) {
        return;
    }
    context->node->_private = reinterpret_cast<void*>(markup::inputPosition(*context) + 1);
}

void recordHtmlStartTag(void* userData, const xmlChar* name, const xmlChar** attributes) {
    xmlSAX2StartElement(userData, name, attributes);
    recordStartTagEnd(static_cast<xmlParserCtxt*>(userData));
}

void recordXmlStartTag(void* userData, const xmlChar* localName, const xmlChar* prefix,
                       const xmlChar* uri, int namespaceCount, const xmlChar** namespaces,
                       int attributeCount, int defaultedCount, const xmlChar** attributes) {
    xmlSAX2StartElementNs(userData, localName, prefix, uri, namespaceCount, namespaces,
                          attributeCount, defaultedCount, attributes);
    recordStartTagEnd(static_cast<xmlParserCtxt*>(userData));
}

bool isReferenceAt(std::string_view text, size_t ampersand) {
    size_t i = ampersand + 1;
    const auto isDigit = [](char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; };
    const auto isHex = [](char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; };
    const auto isNameChar = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; };
    size_t start = i;
    if (i < text.size() && text[i] == '#') {
        ++i;
        const bool hex = i < text.size() && (text[i] == 'x' || text[i] == 'X');
        if (hex) {
            ++i;
        }
        start = i;
        while (i < text.size() && (hex ? isHex(text[i]) : isDigit(text[i]))) {
            ++i;
        }
    } else {
        if (i >= text.size() || std::isalpha(static_cast<unsigned char>(text[i])) == 0) {
            return false;
        }
        while (i < text.size() && isNameChar(text[i])) {
            ++i;
        }
    }
    return i > start && i < text.size() && text[i] == ';';
}

// The references the layouts write themselves, decoded without a parser.
constexpr std::array<std::pair<std::string_view, std::string_view>, 5> kCommonReferences = {{
    {"&amp;", "&"},
    {"&lt;", "<"},
    {"&gt;", ">"},
    {"&quot;", "\""},
    {"&#39;", "'"},
}};

// `markup` decoded, when it holds no tag and only the common references.
std::optional<std::string> decodedSimply(std::string_view markup) {
    if (markup.find('<') != std::string_view::npos) {
        return std::nullopt;
    }
    std::string text;
    text.reserve(markup.size());
    for (size_t i = 0; i < markup.size(); ++i) {
        if (markup[i] != '&') {
            text += markup[i];
            continue;
        }
        const auto* known = std::find_if(
            kCommonReferences.begin(), kCommonReferences.end(),
            [&](const auto& reference) { return markup.substr(i).starts_with(reference.first); });
        if (known == kCommonReferences.end()) {
            return std::nullopt;
        }
        text += known->second;
        i += known->first.size() - 1;
    }
    return text;
}

// The first anchor of `markup` parsed as an HTML document.
template <typename Read>
std::string readFirstAnchor(const std::string& markup, Read read) {
    const auto document = MarkupDocument::parseHtml(markup);
    if (!document) {
        return {};
    }
    const std::vector<MarkupNode> anchors = document->elementsNamed("a", 1);
    return anchors.empty() ? std::string() : read(anchors.front());
}

}  // namespace

std::string htmlTextContent(std::string_view markup) {
    if (auto simple = decodedSimply(markup)) {
        return *std::move(simple);
    }
    return readFirstAnchor("<html><body><a>" + std::string(markup) + "</a></body></html>",
                           [](const MarkupNode& anchor) { return anchor.stringValue(); });
}

std::string htmlAttributeValue(std::string_view written) {
    if (auto simple = decodedSimply(written)) {
        return *std::move(simple);
    }
    return readFirstAnchor(
        "<html><body><a href=\"" + std::string(written) + "\"></a></body></html>",
        [](const MarkupNode& anchor) { return anchor.attribute("href").value_or(""); });
}

std::string escapeBareAmpersands(std::string_view text) {
    std::string escaped;
    reserveLargeText(escaped, text.size());
    size_t copied = 0;
    for (size_t at = text.find('&'); at != std::string_view::npos; at = text.find('&', at + 1)) {
        escaped.append(text.substr(copied, at + 1 - copied));
        copied = at + 1;
        if (!isReferenceAt(text, at)) {
            escaped += "amp;";
        }
    }
    escaped.append(text.substr(copied));
    return escaped;
}

void MarkupDocument::DocumentDeleter::operator()(xmlDoc* document) const {
    markup::XmlDocumentDeleter()(document);
}

MarkupDocument::MarkupDocument(MarkupDocument&&) noexcept = default;
MarkupDocument& MarkupDocument::operator=(MarkupDocument&&) noexcept = default;
MarkupDocument::~MarkupDocument() = default;

std::optional<MarkupDocument> MarkupDocument::parseHtml(std::string_view bytes) {
    return parse(bytes, true);
}

std::optional<MarkupDocument> MarkupDocument::parseXml(std::string_view bytes) {
    // libxml2's recovery drops a bare "&" together with what follows it; tidying it into
    // "&amp;" first keeps the text, as a person would have meant it.
    return parse(escapeBareAmpersands(bytes), false);
}

std::optional<MarkupDocument> MarkupDocument::parse(std::string_view bytes, bool html) {
    markup::ParserContext context;
    if (html) {
        context = markup::newHtmlParser(bytes);
    } else if (!bytes.empty() && bytes.size() <= INT_MAX) {
        context.reset(xmlCreateMemoryParserCtxt(bytes.data(), static_cast<int>(bytes.size())));
    }
    if (!context || context->sax == nullptr) {
        return std::nullopt;
    }
    MarkupDocument document;
    if (html) {
        context->sax->startElement = recordHtmlStartTag;
        htmlParseDocument(context.get());
    } else {
        context->sax->startElementNs = recordXmlStartTag;
        xmlCtxtUseOptions(context.get(), kXmlOptions);
        xmlParseDocument(context.get());
    }
    document.document_.reset(context->myDoc);
    context->myDoc = nullptr;
    if (!document.document_ || xmlDocGetRootElement(document.document_.get()) == nullptr) {
        return std::nullopt;
    }
    document.source_ = std::string(bytes);
    document.html_ = html;
    return document;
}

std::vector<MarkupNode> MarkupDocument::select(std::string_view xpath) const {
    std::vector<MarkupNode> nodes;
    const std::unique_ptr<xmlXPathContext, XPathContextDeleter> context(
        xmlXPathNewContext(document_.get()));
    if (!context) {
        return nodes;
    }
    context->node = xmlDocGetRootElement(document_.get());
    const std::string expression(xpath);
    const std::unique_ptr<xmlXPathObject, XPathObjectDeleter> result(
        xmlXPathEvalExpression(asXmlChars(expression), context.get()));
    if (!result || result->type != XPATH_NODESET || result->nodesetval == nullptr) {
        return nodes;
    }
    const xmlNodeSet* set = result->nodesetval;
    nodes.reserve(static_cast<size_t>(set->nodeNr));
    for (int i = 0; i < set->nodeNr; ++i) {
        nodes.emplace_back(*this, set->nodeTab[i]);
    }
    return nodes;
}

// An HTML document has no namespaces and no entity references, so "//name" selects exactly
// the elements a walk of the element tree meets. The walk needs no compiled expression and
// can stop early, which matters on every page of a scan; other documents go through XPath.
std::vector<MarkupNode> MarkupDocument::elementsNamed(std::string_view name, size_t most) const {
    std::vector<MarkupNode> nodes;
    if (!html_) {
        nodes = select("//" + std::string(name));
        if (nodes.size() > most) {
            nodes.erase(nodes.begin() + static_cast<std::ptrdiff_t>(most), nodes.end());
        }
        return nodes;
    }
    const std::string wanted(name);
    xmlNode* node = document_->children;
    while (node != nullptr && nodes.size() < most) {
        if (node->type == XML_ELEMENT_NODE && xmlStrEqual(node->name, asXmlChars(wanted)) != 0) {
            nodes.emplace_back(*this, node);
        }
        if (node->type == XML_ELEMENT_NODE && node->children != nullptr) {
            node = node->children;
            continue;
        }
        while (node != nullptr && node->next == nullptr) {
            node = node->parent == reinterpret_cast<xmlNode*>(document_.get()) ? nullptr
                                                                               : node->parent;
        }
        node = node == nullptr ? nullptr : node->next;
    }
    return nodes;
}

bool MarkupNode::isElement() const {
    return node_->type == XML_ELEMENT_NODE;
}

std::string MarkupNode::name() const {
    return fromXmlChars(node_->name);
}

std::optional<std::string> MarkupNode::attribute(std::string_view attributeName) const {
    const std::string name(attributeName);
    if (!isElement() || xmlHasProp(node_, asXmlChars(name)) == nullptr) {
        return std::nullopt;
    }
    return takeXmlChars(xmlGetProp(node_, asXmlChars(name)));
}

std::string MarkupNode::stringValue() const {
    return takeXmlChars(xmlNodeGetContent(node_));
}

std::optional<MarkupNode> MarkupNode::firstChild() const {
    if (node_->children == nullptr) {
        return std::nullopt;
    }
    return MarkupNode(*document_, node_->children);
}

std::string MarkupNode::sourceMarkup() const {
    if (auto source = document_->startTagSource(node_)) {
        return *std::move(source);
    }
    return markup();
}

std::string MarkupNode::markup() const {
    const std::unique_ptr<xmlBuffer, markup::XmlBufferDeleter> buffer(xmlBufferCreate());
    if (!buffer) {
        return {};
    }
    if (document_->html_) {
        htmlNodeDump(buffer.get(), document_->document_.get(), node_);
        return fromXmlChars(xmlBufferContent(buffer.get()));
    }
    // Empty elements keep their end tag: readers of the markup look for "<tag>...</tag>".
    // The setting is libxml2's own and per thread.
    const int keepEmptyTags = xmlSaveNoEmptyTags;
    xmlSaveNoEmptyTags = 1;
    xmlNodeDump(buffer.get(), document_->document_.get(), node_, 0, 0);
    xmlSaveNoEmptyTags = keepEmptyTags;
    return fromXmlChars(xmlBufferContent(buffer.get()));
}

std::optional<std::string> MarkupDocument::startTagSource(const xmlNode* node) const {
    const auto recorded = reinterpret_cast<uintptr_t>(node->_private);
    if (recorded == 0) {
        return std::nullopt;
    }
    return markup::startTagIn(source_, fromXmlChars(node->name), recorded - 1);
}

}  // namespace loomcrest
