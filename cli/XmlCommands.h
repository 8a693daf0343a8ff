#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace loomcrest::cli {

// `xml NAME`, `xml NAME set ROW FIELD VALUE`, `xml NAME delete ROW` (rows from 1).
int runXmlCommand(const std::string& name, const std::vector<std::string>& arguments,
                  std::ostream& out, std::ostream& err);

}  // namespace loomcrest::cli
