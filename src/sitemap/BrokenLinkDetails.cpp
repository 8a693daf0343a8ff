#include "sitemap/BrokenLinkDetails.h"

#include <charconv>

#include "platform/Delimited.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace loomcrest {

namespace {

constexpr size_t kColumnCount = std::size(kBrokenLinkColumns);

template <typename Field>
std::string table(const std::vector<BrokenLinkDetail>& details, char separator,
                  std::string_view lineEnd, Field field) {
    std::string text;
    for (size_t column = 0; column < kColumnCount; ++column) {
        text.append(column == 0 ? "" : std::string(1, separator))
            .append(kBrokenLinkColumns[column]);
    }
    text.append(lineEnd);
    for (const BrokenLinkDetail& row : details) {
        for (const std::string_view value :
             {std::string_view(row.url), std::string_view(row.status),
              std::string_view(row.foundOn), std::string_view(row.linkText)}) {
            text.append(field(value)).push_back(separator);
        }
        text.append(std::to_string(row.links)).append(lineEnd);
    }
    return text;
}

std::optional<uint32_t> parseCount(std::string_view text) {
    uint32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || text.empty()) {
        return std::nullopt;
    }
    return value;
}

}  // namespace

int statusCodeOf(std::string_view status) {
    int code = 0;
    const auto [end, error] = std::from_chars(status.data(), status.data() + status.size(), code);
    const std::string_view rest(end, static_cast<size_t>(status.data() + status.size() - end));
    return error == std::errc() && rest.starts_with(" - ") ? code : 0;
}

std::string brokenLinkDetailsTsv(const std::vector<BrokenLinkDetail>& details) {
    return table(details, '\t', "\n", tsvField);
}

std::string brokenLinkDetailsCsv(const std::vector<BrokenLinkDetail>& details) {
    return table(details, ',', "\r\n", csvField);
}

std::optional<std::vector<BrokenLinkDetail>> parseBrokenLinkDetails(std::string_view text) {
    if (!text.ends_with('\n')) {
        return std::nullopt;
    }
    std::vector<std::string> lines = split(text.substr(0, text.size() - 1), '\n');
    if (lines.front() + "\n" != brokenLinkDetailsTsv({})) {
        return std::nullopt;
    }
    std::vector<BrokenLinkDetail> details;
    for (size_t line = 1; line < lines.size(); ++line) {
        std::vector<std::string> fields = split(lines[line], '\t');
        if (fields.size() != kColumnCount) {
            return std::nullopt;
        }
        const auto links = parseCount(fields[4]);
        if (!links) {
            return std::nullopt;
        }
        details.push_back({std::move(fields[0]), std::move(fields[1]), std::move(fields[2]),
                           std::move(fields[3]), *links});
    }
    return details;
}

BrokenLinkReport readBrokenLinkReport(const std::string& folder,
                                      const std::vector<std::string>& urls) {
    const auto text = readTextFile(folder + "/" + std::string(kBrokenLinkDetailsFile));
    auto details = text ? parseBrokenLinkDetails(*text) : std::nullopt;
    if (details && details->size() == urls.size()) {
        bool same = true;
        for (size_t row = 0; row < urls.size() && same; ++row) {
            same = (*details)[row].url == urls[row];
        }
        if (same) {
            return {std::move(*details), true};
        }
    }
    BrokenLinkReport report;
    for (const std::string& url : urls) {
        report.rows.push_back({url, {}, {}, {}, 0});
    }
    return report;
}

}  // namespace loomcrest
