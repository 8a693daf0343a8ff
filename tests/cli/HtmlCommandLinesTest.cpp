#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "support/RunCommand.h"
#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

using test::runLoomcrest;

TEST(HtmlCommandLines, TheLastLineCanBeEditedAndTheOneAfterItIsRefused) {
    test::TemporaryHome home;
    ASSERT_EQ(runLoomcrest(home, {"demo"}).exitCode, 0);
    const auto lines = runLoomcrest(home, {"html", "Demo", "1c", "lines"});
    ASSERT_EQ(lines.exitCode, 0);
    const auto count = std::count(lines.out.begin(), lines.out.end(), '\n');
    const std::string last = std::to_string(count);
    const std::string next = std::to_string(count + 1);

    const auto beyond = runLoomcrest(home, {"html", "Demo", "1c", "edit", next, "--title", "X"});
    EXPECT_EQ(beyond.exitCode, 1);
    EXPECT_EQ(beyond.err, "No line " + next + " in this layout.\n");

    const auto edited =
        runLoomcrest(home, {"html", "Demo", "1c", "edit", last, "--title", "Last one"});
    EXPECT_EQ(edited.exitCode, 0) << edited.err;
    const std::string after = runLoomcrest(home, {"html", "Demo", "1c", "lines"}).out;
    EXPECT_NE(after.find("\n" + last + "\tlink\t"), std::string::npos) << after;
    EXPECT_NE(after.find("\tLast one\t"), std::string::npos) << after;
}

}  // namespace
}  // namespace loomcrest
