#pragma once

#include <ostream>
#include <string>

namespace loomcrest::cli {

// `export NAME LAYOUT FILE`: LAYOUT is 3c, 2c, 1c, 3cpo, 2cpo, 1cpo, xml, broken-html or
// broken-txt; FILE answers the save dialog.
int exportSitemap(const std::string& name, const std::string& layout, const std::string& file,
                  std::ostream& err);

}  // namespace loomcrest::cli
