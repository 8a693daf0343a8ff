#pragma once

// What the tree parse of markup and the event reading of HTML pages share: how libxml2's
// HTML parser is set up, and how a start tag is found again in the source.

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace loomcrest::markup {

struct ContextDeleter {
    void operator()(xmlParserCtxt* context) const;
};
struct XmlCharDeleter {
    void operator()(xmlChar* text) const { xmlFree(text); }
};
struct XmlBufferDeleter {
    void operator()(xmlBuffer* buffer) const { xmlBufferFree(buffer); }
};
struct XmlDocumentDeleter {
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using ParserContext = std::unique_ptr<xmlParserCtxt, ContextDeleter>;

// An HTML parser over `bytes`, set up as every HTML parse here is; empty when the bytes are
// empty, too long for libxml2, or the parser cannot be made. The bytes must outlive it.
ParserContext newHtmlParser(std::string_view bytes);

// Where the parser stands in its input. A start-element handler sees the end of the tag.
size_t inputPosition(const xmlParserCtxt& context);

// The start tag of an element called `name` whose tag ends at `tagEnd` in `source`, exactly
// as written there; nothing when it cannot be found.
std::optional<std::string> startTagIn(std::string_view source, std::string_view name,
                                      size_t tagEnd);

}  // namespace loomcrest::markup
