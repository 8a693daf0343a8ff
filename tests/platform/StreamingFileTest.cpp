#include "platform/StreamingFile.h"

#include <gtest/gtest.h>

#include "platform/FileSystem.h"
#include "support/FileSizeLimit.h"
#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

using test::fileContents;

// Many pieces, more than one buffer's worth: the target keeps its old contents until the
// commit, then holds every piece in order; a stream dropped uncommitted or stopped by a
// full disk leaves the target and the folder as they were.
TEST(StreamingFile, AppearsWholeOnCommitOrNotAtAll) {
    const test::TemporaryHome home;
    const std::string path = home.path() + "/out.tsv";
    ASSERT_TRUE(writeFileAtomically(path, "old\n"));
    std::string expected;
    {
        StreamingFile file;
        ASSERT_TRUE(file.open(path));
        for (int line = 0; line < 20000; ++line) {
            const std::string piece = "line " + std::to_string(line) + "\n";
            file.write(piece);
            expected += piece;
        }
        EXPECT_EQ(fileContents(path), "old\n");
        ASSERT_TRUE(file.commit());
    }
    EXPECT_EQ(fileContents(path), expected);

    {
        StreamingFile dropped;
        ASSERT_TRUE(dropped.open(path));
        dropped.write("never committed");
    }
    EXPECT_EQ(fileContents(path), expected);

    StreamingFile full;
    ASSERT_TRUE(full.open(path));
    WriteResult result;
    {
        const test::FileSizeLimit fullDisk(1000);
        full.write(std::string(100000, 'x'));
        result = full.commit();
    }
    ASSERT_FALSE(result);
    EXPECT_EQ(result.message(), path + ": File too large");
    EXPECT_EQ(fileContents(path), expected);
    EXPECT_EQ(walkFolder(home.path()).size(), 1U) << "no temporary file is left behind";
}

}  // namespace
}  // namespace loomcrest
