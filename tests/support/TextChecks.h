#pragma once

#include <gtest/gtest.h>

#include <string_view>

namespace loomcrest::test {

// Whether `text` holds `piece`; a failure shows both.
inline testing::AssertionResult contains(std::string_view text, std::string_view piece) {
    if (text.find(piece) != std::string_view::npos) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << testing::PrintToString(text) << "\n  does not hold " << testing::PrintToString(piece);
}

}  // namespace loomcrest::test
