#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/RunCommand.h"

namespace loomcrest::test {

// A run that is refused: exit status 1, nothing on standard output, `err` on standard error.
inline Step refused(std::vector<std::string> arguments, std::string err) {
    return {std::move(arguments), 1, "", std::move(err)};
}

// A run that does what was asked and prints nothing on standard output; what it says on
// standard error is checked elsewhere.
inline Step quiet(std::vector<std::string> arguments) {
    return {std::move(arguments), 0, "", std::nullopt};
}

// A run the command line cannot parse: exit status 2 and nothing on standard output.
inline Step misused(std::vector<std::string> arguments) {
    return {std::move(arguments), 2, "", std::nullopt};
}

}  // namespace loomcrest::test
