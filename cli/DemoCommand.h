#pragma once

#include <ostream>

namespace loomcrest::cli {

// Serves the bundled demo site on a free port of 127.0.0.1, adds it as the site "Demo"
// (replacing an earlier one), scans it and tells where the sitemaps are.
int runDemo(std::ostream& out, std::ostream& err);

}  // namespace loomcrest::cli
