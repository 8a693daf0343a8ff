#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

struct _xmlDoc;
struct _xmlNode;

namespace loomcrest {

// Why a text is not well-formed XML: the first error libxml2 met and its line.
struct XmlSyntaxError {
    size_t line = 0;
    std::string reason;
};

// A document parsed strictly, as a search engine reads it: the first error ends the parse.
// Its nodes know their line numbers, however long the file.
class StrictXmlDocument {
public:
    static std::variant<StrictXmlDocument, XmlSyntaxError> parse(std::string_view text);

    _xmlNode* root() const;

private:
    struct Deleter {
        void operator()(_xmlDoc* document) const;
    };
    explicit StrictXmlDocument(_xmlDoc* document) : document_(document) {}

    std::unique_ptr<_xmlDoc, Deleter> document_;
};

// Nothing when `text` is well-formed XML.
std::optional<XmlSyntaxError> xmlSyntaxError(std::string_view text);

}  // namespace loomcrest
