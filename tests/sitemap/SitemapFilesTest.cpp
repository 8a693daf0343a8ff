#include "sitemap/SitemapFiles.h"

#include <gtest/gtest.h>

#include "platform/FileSystem.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

using test::fileContents;
using test::TemporaryHome;

TEST(SitemapFiles, ClosingsPadTheOpenRow) {
    EXPECT_EQ(oneColumnClosing(), "\n</body>\n</html>");
    EXPECT_EQ(twoColumnClosing(0), "\n</table>\n</body>\n</html>");
    EXPECT_EQ(twoColumnClosing(1), "&nbsp;</td>\n\t</tr>\n</table>\n</body>\n</html>");
    EXPECT_EQ(threeColumnClosing(0), "\n</table>\n</body>\n</html>");
    EXPECT_EQ(threeColumnClosing(1),
              "&nbsp;</td>\n\t\t<td>&nbsp;</td>\n\t</tr>\n</table>\n</body>\n</html>");
    EXPECT_EQ(threeColumnClosing(2), "&nbsp;</td>\n\t</tr>\n</table>\n</body>\n</html>");
}

TEST(SitemapFiles, HeadersReplaceEarlierFilesAndClosingsUseTheAllLinksCounters) {
    TemporaryHome home;
    const std::string folder = home.path();
    test::writeFile(folder + "/sitemap1c.html", "an earlier scan");
    writeSitemapHeaders(folder);
    const std::string head(htmlSitemapHead());
    EXPECT_EQ(fileContents(folder + "/sitemap1c.html"), head);
    EXPECT_EQ(fileContents(folder + "/sitemap1cpo.html"), head);
    EXPECT_EQ(fileContents(folder + "/sitemap3cpo.html"), head + std::string(kTableOpening));
    EXPECT_EQ(fileContents(folder + "/sitemap.xml"), std::string(xmlSitemapHeader()));

    closeSitemapFiles(folder, 0, 2);
    EXPECT_EQ(fileContents(folder + "/sitemap2cpo.html"),
              head + std::string(kTableOpening) + "\n</table>\n</body>\n</html>");
    EXPECT_EQ(
        fileContents(folder + "/sitemap3cpo.html"),
        head + std::string(kTableOpening) + "&nbsp;</td>\n\t</tr>\n</table>\n</body>\n</html>");
    EXPECT_EQ(fileContents(folder + "/sitemap.xml"),
              std::string(xmlSitemapHeader()) + "\n</urlset>");
}

TEST(AppendingFiles, KeepFilesOpenButNeverCreateThem) {
    TemporaryHome home;
    const std::string path = home.path() + "/grows.txt";
    AppendingFiles files;
    EXPECT_FALSE(files.append(path, "lost"));
    test::writeFile(path, "a");
    EXPECT_TRUE(files.append(path, "b"));
    EXPECT_TRUE(files.append(path, "c"));
    EXPECT_TRUE(appendToFile(path, "d"));
    EXPECT_TRUE(files.append(path, "e"));
    EXPECT_EQ(fileContents(path), "abcde");
    files.closeAll();
    EXPECT_FALSE(appendToFile(home.path() + "/missing.txt", "x"));
    EXPECT_FALSE(pathExists(home.path() + "/missing.txt"));
}

}  // namespace
}  // namespace loomcrest
