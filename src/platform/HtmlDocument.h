#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct _xmlNode;
struct _xmlDoc;
struct _xmlParserCtxt;

namespace loomcrest {

class MarkupDocument;

// An element or other node of a parsed document; valid while its document lives.
class MarkupNode {
public:
    MarkupNode(const MarkupDocument& document, _xmlNode* node)
        : document_(&document), node_(node) {}

    bool isElement() const;
    // The element name as the parser stored it (lower case for HTML).
    std::string name() const;
    std::optional<std::string> attribute(std::string_view attributeName) const;
    // The concatenated text of all descendant text nodes.
    std::string stringValue() const;
    std::optional<MarkupNode> firstChild() const;
    // The element's start tag as written in the source, quoting and letter case kept (the
    // whole markup of an empty element such as an image); a serialisation of the node when
    // the tag cannot be found in the source.
    std::string sourceMarkup() const;
    // The node serialised by the parser, with its children.
    std::string markup() const;

private:
    const MarkupDocument* document_;
    _xmlNode* node_;
};

// A document parsed forgivingly from bytes taken as UTF-8, by libxml2's HTML parser or by
// its XML parser in recovery mode.
class MarkupDocument {
public:
    static std::optional<MarkupDocument> parseHtml(std::string_view bytes);
    static std::optional<MarkupDocument> parseXml(std::string_view bytes);

    MarkupDocument(MarkupDocument&&) noexcept;
    MarkupDocument& operator=(MarkupDocument&&) noexcept;
    ~MarkupDocument();

    // The nodes an XPath expression selects from the root element, in document order.
    std::vector<MarkupNode> select(std::string_view xpath) const;
    // The first `most` elements called `name`, in document order: what "//name" selects.
    std::vector<MarkupNode> elementsNamed(std::string_view name, size_t most = SIZE_MAX) const;

private:
    friend class MarkupNode;
    struct DocumentDeleter {
        void operator()(_xmlDoc* document) const;
    };

    MarkupDocument() = default;
    // The start tag of `node` exactly as written in the source, when it can be found.
    std::optional<std::string> startTagSource(const _xmlNode* node) const;
    static std::optional<MarkupDocument> parse(std::string_view bytes, bool html);

    std::string source_;
    std::unique_ptr<_xmlDoc, DocumentDeleter> document_;
    bool html_ = true;
};

// `text` with every "&" that does not start a character or entity reference written as
// "&amp;".
std::string escapeBareAmpersands(std::string_view text);

// The text an HTML parser reads from `markup`, the content of an element: character references
// decoded, tags left out, white space kept.
std::string htmlTextContent(std::string_view markup);
// The value of an attribute written as `written` between double quotes, character references
// decoded.
std::string htmlAttributeValue(std::string_view written);

}  // namespace loomcrest
