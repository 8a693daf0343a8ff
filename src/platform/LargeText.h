#pragma once

#include <string>
#include <string_view>

// Texts of tens of megabytes (a big site's sitemap layouts) are copied a few times per edit.
// Fresh memory is faulted in page by page; asking for huge pages first makes that a small part
// of the copy's cost.
namespace loomcrest {

// Gives `text` room for at least `size` bytes and a little more, backed by huge pages where
// the system offers them. The contents stay as they were.
void reserveLargeText(std::string& text, size_t size);

// `to` = `from`, reusing `to`'s room when it suffices.
void assignLargeText(std::string& to, std::string_view from);

}  // namespace loomcrest
