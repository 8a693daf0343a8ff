#include "platform/FileSystem.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "platform/FolderLock.h"
#include "platform/StreamingFile.h"
#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

using test::fileContents;
using test::TemporaryHome;
using test::writeFile;

TEST(FileSystem, AtomicWriteReplacesTheWholeFileOrNothingAndLeavesNoTemporary) {
    TemporaryHome home;
    const std::string path = home.path() + "/file.txt";
    ASSERT_TRUE(writeFileAtomically(path, "first version, long"));
    ASSERT_TRUE(writeFileAtomically(path, "second"));
    EXPECT_EQ(fileContents(path), "second");
    // The replacement keeps the file's permissions.
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    ASSERT_TRUE(writeFileAtomically(path, "new"));
    struct stat info {};
    ASSERT_EQ(stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640U);

    // A failed write names the file and the reason, and leaves the old file.
    writeFile(path, "old contents");
    {
        const test::FileSizeLimit fullDisk(8);
        EXPECT_EQ(writeFileAtomically(path, "longer than eight").message(),
                  path + ": File too large");
        EXPECT_EQ(appendToFile(path, "more").message(), path + ": File too large");
        AppendingFiles files;
        EXPECT_EQ(files.append(path, "more").message(), path + ": File too large");
        EXPECT_TRUE(files.closeAll());
    }
    EXPECT_EQ(fileContents(path), "old contents");
    EXPECT_EQ(walkFolder(home.path()), std::vector<std::string>{"file.txt"})
        << "no temporary, whether the write went through or not";

    const std::string missing = home.path() + "/missing/file.txt";
    EXPECT_EQ(writeFileAtomically(missing, "x").message(), missing + ": No such file or directory");
    EXPECT_EQ(appendToFile(missing, "x").message(), missing + ": No such file or directory");
    EXPECT_EQ(movePath(missing, path).message(), missing + ": No such file or directory");
    EXPECT_TRUE(removeFile(missing)) << "what is not there needs no removing";
    EXPECT_TRUE(appendToFile(path, "!"));
    EXPECT_EQ(fileContents(path), "old contents!");
}

TEST(FileSystem, EndingsAreReadBehindTrailingBreaksAndHeadsUpToTheirMarker) {
    TemporaryHome home;
    const std::string path = home.path() + "/page.html";
    writeFile(path, std::string(1000, 'x') + "</html>\n \n");
    EXPECT_TRUE(fileEndsWith(path, "</html>"));
    EXPECT_FALSE(fileEndsWith(path, "</body>"));
    writeFile(path, "</html");
    EXPECT_FALSE(fileEndsWith(path, "</html>"));
    EXPECT_FALSE(fileEndsWith(home.path() + "/missing", "</html>"));

    // A head is read up to its marker, which here straddles the reads of 64 KiB; what follows
    // it is never checked.
    const std::string head = std::string(64 * 1024 - 3, 'h');
    writeFile(home.path() + "/layout.html", head + "<body>\xff<body>");
    EXPECT_EQ(readTextFileUpTo(home.path() + "/layout.html", "<body>"), head);
    writeFile(home.path() + "/short.html", "no marker");
    EXPECT_EQ(readTextFileUpTo(home.path() + "/short.html", "<body>"), "no marker");
    writeFile(home.path() + "/latin1.html", "caf\xe9<body>");
    EXPECT_EQ(readTextFileUpTo(home.path() + "/latin1.html", "<body>"), std::nullopt);
    EXPECT_EQ(readTextFileUpTo(home.path() + "/missing.html", "<body>"), std::nullopt);
}

TEST(FolderLock, ASecondHolderIsTurnedAwayUntilTheFirstLetsGo) {
    TemporaryHome home;
    FolderLock first = FolderLock::tryLock(home.path());
    EXPECT_TRUE(first.held());
    EXPECT_EQ(FolderLock::tryLock(home.path()).outcome(), FolderLock::Outcome::Busy);
    first.release();
    EXPECT_FALSE(first.held());
    EXPECT_TRUE(FolderLock::tryLock(home.path()).held());

    const FolderLock missing = FolderLock::tryLock(home.path() + "/missing");
    EXPECT_EQ(missing.outcome(), FolderLock::Outcome::Failed);
    EXPECT_EQ(missing.failure().message(),
              home.path() + "/missing/.lock: No such file or directory");
}

TEST(FileSystem, FoldersAreWalkedInNameOrderAndCreatedOneLevelAtATime) {
    TemporaryHome home;
    writeFile(home.path() + "/b/z.txt", "");
    writeFile(home.path() + "/b/a.txt", "");
    writeFile(home.path() + "/a.txt", "");
    std::filesystem::create_directory_symlink(home.path() + "/b", home.path() + "/link");
    EXPECT_EQ(walkFolder(home.path()),
              (std::vector<std::string>{"a.txt", "b", "b/a.txt", "b/z.txt", "link"}));
    EXPECT_TRUE(walkFolder(home.path() + "/missing").empty());

    // Creation is one level unless parents are asked for.
    EXPECT_EQ(createFolder(home.path() + "/x/y").message(),
              home.path() + "/x/y: No such file or directory");
    EXPECT_TRUE(createFolderWithParents(home.path() + "/x/y"));
    EXPECT_TRUE(isDirectory(home.path() + "/x/y"));
    EXPECT_EQ(createFolder(home.path() + "/x/y").message(), home.path() + "/x/y: File exists");
}

TEST(FileSystem, PathExtensionIsTheTextAfterTheLastDotOfTheName) {
    EXPECT_EQ(pathExtension("a.b/sitemap.xml"), "xml");
    EXPECT_EQ(pathExtension("a.b/noextension"), "");
    EXPECT_EQ(pathExtension("dir/.hidden"), "");
}

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
