#pragma once

#include <ostream>
#include <string_view>

#include "platform/Json.h"
#include "sitemap/BrokenLinkDetails.h"

namespace loomcrest::cli {

enum class BrokenLinksFormat { Text, Tsv, Csv, Json };

// The rows as a JSON array of objects: url, status, code (0 when nothing answered in
// HTTP), foundOn, linkText and links; the details are null when the report has none.
json::Value brokenLinksJson(const BrokenLinkReport& report);

// Text: the columns aligned, or only the URLs when the details are not known. TSV as
// "brokenLinks.tsv" holds it, CSV as the window exports it, JSON as above with a line feed.
void printBrokenLinks(std::ostream& out, const BrokenLinkReport& report, BrokenLinksFormat format);

}  // namespace loomcrest::cli
