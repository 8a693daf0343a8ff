#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace loomcrest {

// The scheme of `text` read as an RFC 3986 URI reference: empty for a relative reference,
// nothing when the text is not a valid reference at all (one holding a space, for instance).
std::optional<std::string> urlScheme(std::string_view text);

}  // namespace loomcrest
