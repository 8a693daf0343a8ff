#include "sitemap/SitemapCheck.h"

#include <libxml/tree.h>

#include <algorithm>
#include <memory>
#include <variant>

#include "platform/HtmlDocument.h"
#include "sitemap/SitemapValues.h"
#include "sitemap/StrictXml.h"

namespace loomcrest {

namespace {

using Severity = SitemapProblem::Severity;

struct XmlCharDeleter {
    void operator()(xmlChar* text) const { xmlFree(text); }
};

std::string_view nameOf(const xmlNode* node) {
    return reinterpret_cast<const char*>(node->name);
}

bool isSitemapElement(const xmlNode* node, std::string_view name) {
    return node->type == XML_ELEMENT_NODE && node->ns != nullptr && node->ns->href != nullptr &&
           reinterpret_cast<const char*>(node->ns->href) == kSitemapNamespace &&
           nameOf(node) == name;
}

size_t lineOf(const xmlNode* node) {
    const long line = xmlGetLineNo(node);
    return line > 0 ? static_cast<size_t>(line) : 1;
}

// The element's text without the white space around it, as search engines read it.
std::string valueOf(const xmlNode* node) {
    const std::unique_ptr<xmlChar, XmlCharDeleter> content(xmlNodeGetContent(node));
    std::string_view value = content ? reinterpret_cast<const char*>(content.get()) : "";
    const size_t first = value.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos) {
        return {};
    }
    return std::string(value.substr(first, value.find_last_not_of(" \t\r\n") - first + 1));
}

class DocumentCheck {
public:
    DocumentCheck(std::string_view folderUrl, const SitemapLimits& limits,
                  std::vector<SitemapProblem>& problems)
        : folderUrl_(folderUrl), limits_(limits), problems_(problems) {}

    void check(const xmlNode* root) {
        const bool index = isSitemapElement(root, "sitemapindex");
        if (!index && !isSitemapElement(root, "urlset")) {
            add(root, "The root element must be <urlset> or <sitemapindex> in the namespace " +
                          std::string(kSitemapNamespace));
            return;
        }
        const std::string_view entryName = index ? "sitemap" : "url";
        size_t entries = 0;
        for (const xmlNode* entry = root->children; entry != nullptr; entry = entry->next) {
            if (!isSitemapElement(entry, entryName)) {
                continue;
            }
            if (++entries == limits_.maxUrls + 1) {
                add(entry, (index ? "The sitemap index lists more than "
                                  : "The sitemap holds "
                                    "more than ") +
                               groupedDigits(limits_.maxUrls) + (index ? " sitemaps" : " URLs"));
            }
            checkEntry(entry, entryName);
        }
    }

private:
    void checkEntry(const xmlNode* entry, std::string_view entryName) {
        size_t locations = 0;
        for (const xmlNode* child = entry->children; child != nullptr; child = child->next) {
            if (isSitemapElement(child, "loc")) {
                ++locations;
                addIf(child, locationProblem(valueOf(child), folderUrl_));
            } else if (isSitemapElement(child, "lastmod")) {
                const std::string date = valueOf(child);
                if (date.empty()) {
                    add(child, "The last-modified date is empty; the export leaves it out",
                        Severity::Warning);
                } else {
                    addIf(child, dateProblem(date));
                }
            } else if (entryName == "url" && isSitemapElement(child, "changefreq")) {
                addIf(child, changeFrequencyProblem(valueOf(child)));
            } else if (entryName == "url" && isSitemapElement(child, "priority")) {
                addIf(child, priorityProblem(valueOf(child)));
            }
        }
        if (locations != 1) {
            add(entry, "The <" + std::string(entryName) + "> entry must hold one <loc>, not " +
                           std::to_string(locations));
        }
    }

    void addIf(const xmlNode* node, std::optional<std::string> problem) {
        if (problem) {
            add(node, std::move(*problem));
        }
    }
    void add(const xmlNode* node, std::string text, Severity severity = Severity::Error) {
        problems_.push_back({lineOf(node), severity, std::move(text)});
    }

    std::string_view folderUrl_;
    const SitemapLimits& limits_;
    std::vector<SitemapProblem>& problems_;
};

size_t lineAt(std::string_view text, size_t position) {
    const std::string_view before = text.substr(0, std::min(position, text.size()));
    return static_cast<size_t>(std::count(before.begin(), before.end(), '\n')) + 1;
}

// One problem for every line holding an "&" that starts no character or entity reference:
// where `escaped` (the text with such ampersands escaped) gained an "amp;".
void addBareAmpersands(std::string_view text, std::string_view escaped,
                       std::vector<SitemapProblem>& problems) {
    size_t line = 1;
    size_t lastReported = 0;
    for (size_t i = 0, e = 0; i < text.size(); ++i, ++e) {
        if (text[i] == '\n') {
            ++line;
        }
        if (text[i] != '&' || escaped.substr(e, 5) != "&amp;" || text.substr(i, 5) == "&amp;") {
            continue;
        }
        e += 4;
        if (line != lastReported) {
            problems.push_back({line, Severity::Error, R"(A bare "&" must be written "&amp;")"});
            lastReported = line;
        }
    }
}

// Addresses written with a bare "'" read well enough, but sitemaps.org asks for "&apos;"; the
// export writes it so.
void addUnescapedApostrophes(std::string_view text, std::vector<SitemapProblem>& problems) {
    size_t line = 1;
    size_t counted = 0;
    for (size_t open = text.find("<loc>"); open != std::string_view::npos;
         open = text.find("<loc>", open + 5)) {
        const std::string_view location = text.substr(open, text.find("</loc>", open) - open);
        const size_t apostrophe = location.find('\'');
        if (apostrophe == std::string_view::npos) {
            continue;
        }
        const std::string_view before = text.substr(counted, open + apostrophe - counted);
        line += static_cast<size_t>(std::count(before.begin(), before.end(), '\n'));
        counted = open + apostrophe;
        problems.push_back(
            {line, Severity::Warning, R"(The URL holds a "'" that the export writes "&apos;")"});
    }
}

void addSizeProblem(std::string_view text, const SitemapLimits& limits,
                    std::vector<SitemapProblem>& problems) {
    if (text.size() > limits.maxBytes) {
        problems.push_back({lineAt(text, limits.maxBytes), Severity::Error,
                            "The sitemap is " + groupedDigits(text.size()) +
                                " bytes long; one file may hold at most " +
                                groupedDigits(limits.maxBytes)});
    }
}

}  // namespace

std::vector<SitemapProblem> checkSitemap(std::string_view text, std::string_view siteUrl,
                                         const SitemapLimits& limits) {
    std::vector<SitemapProblem> problems;
    std::string repaired;
    auto parsed = StrictXmlDocument::parse(text);
    if (std::holds_alternative<XmlSyntaxError>(parsed)) {
        // Bare ampersands are the usual fault of a hand-edited sitemap; the rest of the file
        // is checked as it reads once they are escaped, and the line numbers stay the same.
        repaired = escapeBareAmpersands(text);
        addBareAmpersands(text, repaired, problems);
        if (!problems.empty()) {
            parsed = StrictXmlDocument::parse(repaired);
            text = repaired;
        }
    }
    if (const auto* error = std::get_if<XmlSyntaxError>(&parsed)) {
        problems.push_back(
            {error->line, Severity::Error, "The XML is not well formed: " + error->reason});
    } else {
        const std::string folder = siteUrl.empty() ? std::string() : siteFolderUrl(siteUrl);
        DocumentCheck(folder, limits, problems).check(std::get<StrictXmlDocument>(parsed).root());
        addUnescapedApostrophes(text, problems);
    }
    addSizeProblem(text, limits, problems);
    std::stable_sort(problems.begin(), problems.end(),
                     [](const auto& a, const auto& b) { return a.line < b.line; });
    return problems;
}

}  // namespace loomcrest
