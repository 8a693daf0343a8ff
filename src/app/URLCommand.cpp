#include "app/URLCommand.h"

namespace loomcrest {

void URLCommand::performWithURL(std::string_view /*url*/) {
    // Scripts only need the command to be accepted; what the URL names changes nothing.
}

}  // namespace loomcrest
