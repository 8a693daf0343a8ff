#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/RunCommand.h"

namespace loomcrest::test {

// The usual shapes of a run, each with nothing on standard output: refused (exit status 1 and
// `err` on standard error), done quietly (0) and misused (2); standard error is left unchecked
// in the last two.
inline Step refused(std::vector<std::string> arguments, std::string err) {
    return {std::move(arguments), 1, "", std::move(err)};
}
inline Step quiet(std::vector<std::string> arguments) {
    return {std::move(arguments), 0, "", std::nullopt};
}
inline Step misused(std::vector<std::string> arguments) {
    return {std::move(arguments), 2, "", std::nullopt};
}

}  // namespace loomcrest::test
