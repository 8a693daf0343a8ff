#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What a scan learnt about each broken page, beside the bare list of "badLinks.txt": why it
// failed and where it was linked from. Kept in "brokenLinks.tsv", one page a line in the
// order of "badLinks.txt", under a header line.
namespace loomcrest {

inline constexpr std::string_view kBrokenLinkDetailsFile = "brokenLinks.tsv";

struct BrokenLinkDetail {
    std::string url;
    // "404 - Not Found", or why nothing answered in HTTP ("Connection refused").
    std::string status;
    // The first page that linked to it and that link's text; empty for the start page.
    std::string foundOn;
    std::string linkText;
    // How many links of the scanned pages pointed to it.
    uint32_t links = 0;

    bool operator==(const BrokenLinkDetail&) const = default;
};

// The column titles, in file order.
inline constexpr std::array<std::string_view, 5> kBrokenLinkColumns = {"URL", "Status", "Found on",
                                                                       "Link text", "Links"};

// The status code a status text starts with ("404 - ..."); 0 when there was no HTTP answer.
int statusCodeOf(std::string_view status);

// The file's text: the header line, then one line per page. Tabs and line breaks inside a
// field become blanks, so every line has five fields.
std::string brokenLinkDetailsTsv(const std::vector<BrokenLinkDetail>& details);
// The same as comma-separated values (RFC 4180): fields with a comma, a quote or a line
// break are quoted, quotes doubled; lines end with CR LF.
std::string brokenLinkDetailsCsv(const std::vector<BrokenLinkDetail>& details);
// Reads the text back; nothing when it is not such a file.
std::optional<std::vector<BrokenLinkDetail>> parseBrokenLinkDetails(std::string_view text);

// The details of `urls` (the broken-links list as read from "badLinks.txt") from the
// folder's "brokenLinks.tsv". Only a file that lists exactly these URLs in this order
// counts; otherwise (a site scanned before the file existed, a list restored without it)
// every URL comes with empty details and `complete` is false.
struct BrokenLinkReport {
    std::vector<BrokenLinkDetail> rows;
    bool complete = false;
};
BrokenLinkReport readBrokenLinkReport(const std::string& folder,
                                      const std::vector<std::string>& urls);

}  // namespace loomcrest
