// The XML sitemap editor: the file parsed into its entries as the table reads them, each
// entry read and changed element by element, and the last-updated check on every line.
#include "FuzzInput.h"
#include "editors/XmlEntry.h"
#include "platform/HtmlDocument.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace loomcrest;
    const std::string_view text = fuzz::asText(data, size);
    for (const std::string_view line : fuzz::lines(text)) {
        (void)xmlentry::lastUpdatedProblem(line, "2024-05-17");
    }
    const auto document = MarkupDocument::parseXml(text);
    if (!document) {
        return 0;
    }
    for (const MarkupNode& node : document->select("//*[local-name()='url']")) {
        const std::string entry = node.markup();
        for (const char* tag : {"loc", "lastmod", "changefreq", "priority"}) {
            const auto value = xmlentry::value(entry, tag);
            (void)xmlentry::withElement(entry, tag, value.value_or("x"));
        }
        (void)xmlentry::lastUpdatedProblem(xmlentry::value(entry, "lastmod").value_or(""),
                                           "2024-05-17");
    }
    return 0;
}
