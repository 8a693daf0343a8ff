#include "platform/FileSystem.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

using test::fileContents;
using test::TemporaryHome;
using test::writeFile;

TEST(FileSystem, AtomicWriteReplacesTheWholeFileAndLeavesNoTemporary) {
    TemporaryHome home;
    const std::string path = home.path() + "/file.txt";
    ASSERT_TRUE(writeFileAtomically(path, "first version, long"));
    ASSERT_TRUE(writeFileAtomically(path, "second"));
    EXPECT_EQ(fileContents(path), "second");
    EXPECT_EQ(walkFolder(home.path()), std::vector<std::string>{"file.txt"});
}

TEST(FileSystem, AtomicWriteKeepsTheFilesPermissions) {
    TemporaryHome home;
    const std::string path = home.path() + "/file.txt";
    writeFile(path, "old");
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    ASSERT_TRUE(writeFileAtomically(path, "new"));
    struct stat info {};
    ASSERT_EQ(stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640U);
}

TEST(FileSystem, AtomicWriteIntoAMissingFolderFails) {
    TemporaryHome home;
    EXPECT_FALSE(writeFileAtomically(home.path() + "/missing/file.txt", "x"));
}

TEST(FileSystem, ReadingGivesNothingForMissingOrMalformedFiles) {
    TemporaryHome home;
    EXPECT_EQ(readTextFile(home.path() + "/missing.txt"), std::nullopt);
    writeFile(home.path() + "/latin1.txt", "caf\xe9");
    EXPECT_EQ(readTextFile(home.path() + "/latin1.txt"), std::nullopt);
    writeFile(home.path() + "/empty.txt", "");
    EXPECT_EQ(readTextFile(home.path() + "/empty.txt"), "");
    EXPECT_EQ(readTextFile(home.path()), std::nullopt) << "a folder is no text file";
}

TEST(FileSystem, AHeadIsReadUpToItsMarker) {
    TemporaryHome home;
    // The marker straddles the reads of 64 KiB; what follows it is never checked.
    const std::string head = std::string(64 * 1024 - 3, 'h');
    writeFile(home.path() + "/layout.html", head + "<body>\xff<body>");
    EXPECT_EQ(readTextFileUpTo(home.path() + "/layout.html", "<body>"), head);
    writeFile(home.path() + "/short.html", "no marker");
    EXPECT_EQ(readTextFileUpTo(home.path() + "/short.html", "<body>"), "no marker");
    writeFile(home.path() + "/latin1.html", "caf\xe9<body>");
    EXPECT_EQ(readTextFileUpTo(home.path() + "/latin1.html", "<body>"), std::nullopt);
    EXPECT_EQ(readTextFileUpTo(home.path() + "/missing.html", "<body>"), std::nullopt);
}

TEST(FileSystem, WalkListsFoldersBeforeTheirContentsInNameOrder) {
    TemporaryHome home;
    writeFile(home.path() + "/b/z.txt", "");
    writeFile(home.path() + "/b/a.txt", "");
    writeFile(home.path() + "/a.txt", "");
    std::filesystem::create_directory_symlink(home.path() + "/b", home.path() + "/link");
    EXPECT_EQ(walkFolder(home.path()),
              (std::vector<std::string>{"a.txt", "b", "b/a.txt", "b/z.txt", "link"}));
    EXPECT_TRUE(walkFolder(home.path() + "/missing").empty());
}

TEST(FileSystem, FolderCreationIsOneLevelUnlessParentsAreAsked) {
    TemporaryHome home;
    EXPECT_FALSE(createFolder(home.path() + "/x/y"));
    EXPECT_TRUE(createFolderWithParents(home.path() + "/x/y"));
    EXPECT_TRUE(isDirectory(home.path() + "/x/y"));
}

TEST(FileSystem, PathExtensionIsTheTextAfterTheLastDotOfTheName) {
    EXPECT_EQ(pathExtension("Example/Example.vrLMP"), "vrLMP");
    EXPECT_EQ(pathExtension("a.b/sitemap.xml"), "xml");
    EXPECT_EQ(pathExtension("a.b/noextension"), "");
    EXPECT_EQ(pathExtension("dir/.hidden"), "");
}

}  // namespace
}  // namespace loomcrest
