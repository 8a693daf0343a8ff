#include "platform/HtmlOutline.h"

#include <libxml/HTMLparser.h>
#include <libxml/HTMLtree.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>

#include "platform/HtmlParsing.h"

namespace loomcrest {

namespace {

std::string_view asView(const xmlChar* text) {
    return text == nullptr ? std::string_view() : reinterpret_cast<const char*>(text);
}

std::string attributeValue(const xmlChar** attributes, std::string_view name) {
    for (const xmlChar** at = attributes; at != nullptr && *at != nullptr; at += 2) {
        if (asView(*at) == name) {
            return std::string(asView(at[1]));
        }
    }
    return {};
}

// An image serialised as the tree parse prints it when its tag is not found in the source.
std::string printedImage(const xmlChar** attributes) {
    const std::unique_ptr<xmlDoc, markup::XmlDocumentDeleter> document(
        htmlNewDocNoDtD(nullptr, nullptr));
    const std::unique_ptr<xmlBuffer, markup::XmlBufferDeleter> buffer(xmlBufferCreate());
    if (!document || !buffer) {
        return {};
    }
    xmlNode* image = xmlNewDocNode(document.get(), nullptr, BAD_CAST "img", nullptr);
    if (image == nullptr) {
        return {};
    }
    xmlDocSetRootElement(document.get(), image);
    for (const xmlChar** at = attributes; at != nullptr && *at != nullptr; at += 2) {
        xmlNewProp(image, at[0], at[1]);
    }
    htmlNodeDump(buffer.get(), document.get(), image);
    return std::string(asView(xmlBufferContent(buffer.get())));
}

// Follows the parser's events as its tree builder does: each element event opens a node
// inside the innermost open one, each end event closes the innermost, and text, comments
// and instructions become children of the innermost. (The parser also drops an element
// without an end event when the input ends inside its start tag; nothing can follow then.)
class OutlineReader {
public:
    explicit OutlineReader(std::string_view source) : source_(source) {}

    void startElement(xmlParserCtxt& context, const xmlChar* name, const xmlChar** attributes);
    void endElement();
    void text(const xmlChar* characters, int length);
    void otherChild();

    HtmlOutline outline;
    bool sawElement = false;

private:
    struct Open {
        // The anchor's place in the outline, or -1 for any other element.
        std::ptrdiff_t anchor = -1;
        bool title = false;
        bool childless = true;
    };

    void closeInnermost();
    // Notes a child of the innermost open element, which may be an anchor's first.
    Open* innermostGetsChild();
    void enter(const xmlParserCtxt& context, std::string_view name, const xmlChar** attributes);

    std::string_view source_;
    std::vector<Open> open_;
    std::vector<size_t> openAnchors_;
    bool titleOpen_ = false;
};

void OutlineReader::closeInnermost() {
    if (open_.empty()) {
        return;
    }
    if (open_.back().anchor >= 0) {
        openAnchors_.pop_back();
    }
    titleOpen_ = titleOpen_ && !open_.back().title;
    open_.pop_back();
}

OutlineReader::Open* OutlineReader::innermostGetsChild() {
    if (open_.empty()) {
        return nullptr;
    }
    Open& parent = open_.back();
    const bool first = parent.childless;
    parent.childless = false;
    return first && parent.anchor >= 0 ? &parent : nullptr;
}

void OutlineReader::startElement(xmlParserCtxt& context, const xmlChar* name,
                                 const xmlChar** attributes) {
    if (open_.size() > xmlParserMaxDepth) {
        // Where the tree builder refuses to go deeper, and stops the parse: only end events
        // follow.
        xmlStopParser(&context);
        return;
    }
    // The builder drops a prefix: "svg:a" is an element "a".
    std::unique_ptr<xmlChar, markup::XmlCharDeleter> localName;
    if (std::strchr(reinterpret_cast<const char*>(name), ':') != nullptr) {
        xmlChar* prefix = nullptr;
        localName.reset(xmlSplitQName(&context, name, &prefix));
        xmlFree(prefix);
    }
    enter(context, asView(localName ? localName.get() : name), attributes);
}

void OutlineReader::enter(const xmlParserCtxt& context, std::string_view name,
                          const xmlChar** attributes) {
    sawElement = true;
    if (Open* anchor = innermostGetsChild(); anchor != nullptr && name == "img") {
        const auto tag = markup::startTagIn(source_, name, markup::inputPosition(context));
        outline.anchors[static_cast<size_t>(anchor->anchor)].firstChildImage =
            tag ? *tag : printedImage(attributes);
    }
    Open& element = open_.emplace_back();
    if (name == "a") {
        element.anchor = static_cast<std::ptrdiff_t>(outline.anchors.size());
        openAnchors_.push_back(outline.anchors.size());
        outline.anchors.push_back(
            {attributeValue(attributes, "href"), attributeValue(attributes, "name"), {}, {}});
    } else if (name == "title" && !outline.title) {
        element.title = true;
        titleOpen_ = true;
        outline.title.emplace();
    }
}

void OutlineReader::endElement() {
    closeInnermost();
}

void OutlineReader::text(const xmlChar* characters, int length) {
    // Text outside every element is dropped, as the tree builder drops it: no title or
    // anchor is open then.
    (void)innermostGetsChild();
    const std::string_view text(reinterpret_cast<const char*>(characters),
                                static_cast<size_t>(std::max(length, 0)));
    if (titleOpen_) {
        outline.title->append(text);
    }
    for (const size_t anchor : openAnchors_) {
        outline.anchors[anchor].text.append(text);
    }
}

void OutlineReader::otherChild() {
    (void)innermostGetsChild();
}

OutlineReader& readerOf(void* userData) {
    return *static_cast<OutlineReader*>(static_cast<xmlParserCtxt*>(userData)->_private);
}

xmlParserCtxt& contextOf(void* userData) {
    return *static_cast<xmlParserCtxt*>(userData);
}

void onStartElement(void* userData, const xmlChar* name, const xmlChar** attributes) {
    readerOf(userData).startElement(contextOf(userData), name, attributes);
}

void onEndElement(void* userData, const xmlChar* /*name*/) {
    readerOf(userData).endElement();
}

void onText(void* userData, const xmlChar* characters, int length) {
    readerOf(userData).text(characters, length);
}

void onComment(void* userData, const xmlChar* /*text*/) {
    readerOf(userData).otherChild();
}

void onProcessingInstruction(void* userData, const xmlChar* /*target*/, const xmlChar* /*data*/) {
    readerOf(userData).otherChild();
}

}  // namespace

std::optional<HtmlOutline> readHtmlOutline(std::string_view bytes) {
    const markup::ParserContext context = markup::newHtmlParser(bytes);
    if (!context) {
        return std::nullopt;
    }
    OutlineReader reader(bytes);
    xmlSAXHandler& events = *context->sax;
    // No document is built: the reader keeps only what it needs.
    events.startDocument = nullptr;
    events.endDocument = nullptr;
    events.internalSubset = nullptr;
    events.startElement = onStartElement;
    events.endElement = onEndElement;
    events.characters = onText;
    events.cdataBlock = onText;
    events.comment = onComment;
    events.processingInstruction = onProcessingInstruction;
    context->_private = &reader;
    htmlParseDocument(context.get());
    if (!reader.sawElement) {
        return std::nullopt;
    }
    return std::move(reader.outline);
}

}  // namespace loomcrest
