#include "app/URLCommand.h"

#include <string>

#include "platform/Text.h"

namespace loomcrest {

void URLCommand::performWithURL(std::string_view url) {
    constexpr std::string_view kSeparator = "://";
    const size_t first = url.find(kSeparator);
    if (first == std::string_view::npos ||
        url.find(kSeparator, first + kSeparator.size()) != std::string_view::npos) {
        return;
    }
    // The path's pieces are counted and the count is not used.
    [[maybe_unused]] const size_t pathPieces =
        split(url.substr(first + kSeparator.size()), '/').size();
}

}  // namespace loomcrest
