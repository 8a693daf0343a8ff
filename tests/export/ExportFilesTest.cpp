#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "export/ExportFile.h"
#include "export/Gzip.h"
#include "platform/FileSystem.h"
#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

using test::fileContents;

TEST(ExportFiles, ASetIsWrittenWholeOrNotAtAll) {
    const test::TemporaryHome folder;
    const std::string one = folder.path() + "/sitemap1.xml";
    const std::string two = folder.path() + "/sitemap2.xml";
    const std::string index = folder.path() + "/sitemap.xml";
    const std::string published = folder.path() + "/site/sitemap.xml";
    test::writeFile(one, "old one");
    test::writeFile(published, "old index");
    // A link is written through: the file it names gets the contents and the link stays.
    std::filesystem::create_symlink("site/sitemap.xml", index);
    // The second part's name is taken by a folder, so the set fails after the first part.
    std::filesystem::create_directory(two);

    const std::vector<ExportFileContents> files{
        {one, "new one"}, {two, "new two"}, {index, "new index"}};
    const auto failure = writeExportFiles(files);
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->path, two);
    EXPECT_EQ(failure->reason, "Is a directory");
    EXPECT_EQ(fileContents(one), "old one");
    EXPECT_EQ(fileContents(index), "old index");
    EXPECT_EQ(walkFolder(folder.path()),
              (std::vector<std::string>{"site", "site/sitemap.xml", "sitemap.xml", "sitemap1.xml",
                                        "sitemap2.xml"}));

    std::filesystem::remove(two);
    EXPECT_FALSE(writeExportFiles(files).has_value());
    EXPECT_EQ(fileContents(one), "new one");
    EXPECT_EQ(fileContents(two), "new two");
    EXPECT_EQ(fileContents(published), "new index");
    EXPECT_TRUE(std::filesystem::is_symlink(index));
}

TEST(Gzip, ReadsBackUpToTheLimitAndSaysWhenThereWasMore) {
    const std::string plain = "<urlset>" + std::string(100000, 'u') + "</urlset>";
    const auto gzip = gzipCompressed(plain);
    ASSERT_TRUE(gzip.has_value());
    EXPECT_TRUE(isGzip(*gzip));
    EXPECT_FALSE(isGzip(plain));

    const auto whole = gunzip(*gzip, plain.size());
    ASSERT_TRUE(whole.has_value());
    EXPECT_EQ(whole->bytes, plain);
    EXPECT_FALSE(whole->truncated) << "exactly the limit is not more than it";

    const auto cut = gunzip(*gzip, plain.size() - 1);
    ASSERT_TRUE(cut.has_value());
    EXPECT_EQ(cut->bytes, plain.substr(0, plain.size() - 1));
    EXPECT_TRUE(cut->truncated);

    EXPECT_EQ(gunzip(gzip->substr(0, gzip->size() / 2), plain.size()), std::nullopt);
    EXPECT_EQ(gunzip(plain, plain.size()), std::nullopt);
}

}  // namespace
}  // namespace loomcrest
