#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

namespace loomcrest::test {

// The exact bytes of a shared sample of a file format, kept under tests/data/.
inline std::string golden(const std::string& name) {
    std::ifstream in(std::string(LOOMCREST_TEST_DATA) + "/" + name, std::ios::binary);
    if (!in) {
        ADD_FAILURE() << "no sample file " << name;
        return {};
    }
    std::ostringstream contents;
    contents << in.rdbuf();
    return contents.str();
}

}  // namespace loomcrest::test
