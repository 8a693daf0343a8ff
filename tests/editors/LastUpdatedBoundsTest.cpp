#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "editors/XmlEntry.h"

namespace loomcrest {
namespace {

// Month and day are read as numbers from fixed positions, so a blank lets a day of two
// digits reach the check; the upper bounds are checked at both sides.
TEST(LastUpdatedBounds, TheUpperBoundsOfMonthAndDayAreInclusive) {
    const std::string month = "The month must be a number between 01 and 12";
    const std::string day = "The day must be a number between 01 and 31";
    const std::vector<std::pair<std::string, std::optional<std::string>>> cases = {
        {"2024-5 31 2024-05-17", std::nullopt}, {"2024-5 32 2024-05-17", day},
        {"2024- 12 2024-05-17", std::nullopt},  {"2024- 13 2024-05-17", month},
        {"2024-02-05", std::nullopt},
    };
    for (const auto& [value, problem] : cases) {
        EXPECT_EQ(xmlentry::lastUpdatedProblem(value, "2026-11-21"), problem) << value;
    }
}

}  // namespace
}  // namespace loomcrest
