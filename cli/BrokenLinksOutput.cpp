#include "BrokenLinksOutput.h"

#include <algorithm>
#include <array>
#include <string>

namespace loomcrest::cli {

namespace {

constexpr size_t kColumnCount = std::size(kBrokenLinkColumns);

// Characters, not bytes, so that a column of other scripts lines up too.
size_t displayWidth(std::string_view text) {
    return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

std::array<std::string, kColumnCount> cells(const BrokenLinkDetail& row) {
    return {row.url, row.status, row.foundOn, row.linkText, std::to_string(row.links)};
}

void printAligned(std::ostream& out, const std::vector<BrokenLinkDetail>& rows) {
    std::array<size_t, kColumnCount> widths{};
    for (size_t column = 0; column < kColumnCount; ++column) {
        widths[column] = displayWidth(kBrokenLinkColumns[column]);
    }
    for (const BrokenLinkDetail& row : rows) {
        const auto texts = cells(row);
        for (size_t column = 0; column < kColumnCount; ++column) {
            widths[column] = std::max(widths[column], displayWidth(texts[column]));
        }
    }
    const auto printLine = [&](const auto& texts) {
        for (size_t column = 0; column < kColumnCount; ++column) {
            const std::string_view text = texts[column];
            out << text;
            if (column + 1 < kColumnCount) {
                out << std::string(widths[column] - displayWidth(text) + 2, ' ');
            }
        }
        out << '\n';
    };
    printLine(kBrokenLinkColumns);
    for (const BrokenLinkDetail& row : rows) {
        printLine(cells(row));
    }
}

}  // namespace

json::Value brokenLinksJson(const BrokenLinkReport& report) {
    json::Array rows;
    for (const BrokenLinkDetail& row : report.rows) {
        json::Object object{{"url", row.url}};
        if (report.complete) {
            object.emplace_back("status", row.status);
            object.emplace_back("code", statusCodeOf(row.status));
            object.emplace_back("foundOn", row.foundOn);
            object.emplace_back("linkText", row.linkText);
            object.emplace_back("links", static_cast<int64_t>(row.links));
        } else {
            for (const char* name : {"status", "code", "foundOn", "linkText", "links"}) {
                object.emplace_back(name, nullptr);
            }
        }
        rows.emplace_back(std::move(object));
    }
    return rows;
}

void printBrokenLinks(std::ostream& out, const BrokenLinkReport& report, BrokenLinksFormat format) {
    switch (format) {
        case BrokenLinksFormat::Text:
            if (report.complete) {
                printAligned(out, report.rows);
            } else {
                for (const BrokenLinkDetail& row : report.rows) {
                    out << row.url << '\n';
                }
            }
            return;
        case BrokenLinksFormat::Tsv:
            out << brokenLinkDetailsTsv(report.rows);
            return;
        case BrokenLinksFormat::Csv:
            out << brokenLinkDetailsCsv(report.rows);
            return;
        case BrokenLinksFormat::Json:
            out << json::write(brokenLinksJson(report), json::Layout::Indented) << '\n';
            return;
    }
}

}  // namespace loomcrest::cli
