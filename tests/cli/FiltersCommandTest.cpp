#include <gtest/gtest.h>

#include "support/RunCommand.h"

namespace loomcrest {
namespace {

using FiltersCommand = test::CommandLineTest;

TEST_F(FiltersCommand, ListsAddsAndDeletesByRowFromOneOrRefuses) {
    ASSERT_EQ(run({"add", "Example", "example.com"}).exitCode, 0);
    const std::string file = siteFile("Example", "filters.zplp");
    expectSteps({{{"filters", "Example"}}});
    EXPECT_EQ(test::fileContents(file), "") << "selecting the site creates the file";
    expectSteps({
        {{"filters", "Example", "add", "  tmp  "}},
        {{"filters", "Example", "add", "PDF"}},
        {{"filters", "Example", "add", "old"}},
        {{"filters", "Example"}, 0, "  tmp  \nPDF\nold\n"},
        {{"filters", "Example", "list"}, 0, "  tmp  \nPDF\nold\n"},
        {{"filters", "Example", "delete", "4"}, 1, "", "No filter in row 4.\n"},
        {{"filters", "Example", "delete", "3", "1"}},
        {{"filters", "Example", "add", ""}, 1, "", "Cannot Add Filter\nThere is nothing to add!\n"},
        {{"filters", "Example", "delete", "1", "2"}, 1, "", "No filter in row 2.\n"},
        {{"filters", "Example", "delete", "0"}, 2, "", "Not a row number: 0\n"},
        {{"filters", "Example", "rename"}, 2, "", std::nullopt},
    });
    EXPECT_EQ(test::fileContents(file), "PDF\n");
}

}  // namespace
}  // namespace loomcrest
