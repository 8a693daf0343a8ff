#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace loomcrest::cli {

// `filters NAME`, `filters NAME add TEXT`, `filters NAME delete ROW...` (rows from 1).
int runFilterCommand(const std::string& name, const std::vector<std::string>& arguments,
                     std::ostream& out, std::ostream& err);

}  // namespace loomcrest::cli
