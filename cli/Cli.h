#pragma once

#include <ostream>

namespace loomcrest::cli {

// Parses the command line, runs the command and returns the process's exit status.
int runLoomcrest(int argc, const char* const* argv, std::ostream& out, std::ostream& err);

}  // namespace loomcrest::cli
