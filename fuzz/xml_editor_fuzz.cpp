// The XML sitemap editor: the file parsed into its entries as the table reads them, each
// entry read and changed element by element, and the last-updated check on every line. Of a
// file that is UTF-8 text, as the editor reads it, and starts with the header a scan writes
// (the plain reader does not check the header), the entries the plain reader gives when it
// takes the file must be those the XML parser serialises; a difference stops the fuzzer.
#include <cstdlib>

#include "FuzzInput.h"
#include "editors/XmlEntry.h"
#include "editors/XmlSitemapEntries.h"
#include "platform/HtmlDocument.h"
#include "platform/Text.h"
#include "sitemap/SitemapFiles.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace loomcrest;
    const std::string_view text = fuzz::asText(data, size);
    for (const std::string_view line : fuzz::lines(text)) {
        (void)xmlentry::lastUpdatedProblem(line, "2024-05-17");
    }
    const bool comparable = isValidUtf8(text) && text.starts_with(xmlSitemapHeader());
    const auto plain = comparable ? xmlentries::plainEntries(text) : std::nullopt;
    const auto document = MarkupDocument::parseXml(text);
    if (!document) {
        if (plain) {
            std::abort();
        }
        return 0;
    }
    std::vector<std::string> parsed;
    for (const MarkupNode& node : document->select("//*[local-name()='url']")) {
        const std::string entry = node.markup();
        parsed.push_back(entry);
        for (const char* tag : {"loc", "lastmod", "changefreq", "priority"}) {
            const auto value = xmlentry::value(entry, tag);
            (void)xmlentry::withElement(entry, tag, value.value_or("x"));
        }
        (void)xmlentry::lastUpdatedProblem(xmlentry::value(entry, "lastmod").value_or(""),
                                           "2024-05-17");
    }
    if (plain && *plain != parsed) {
        std::abort();
    }
    return 0;
}
