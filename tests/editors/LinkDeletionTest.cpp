#include <gtest/gtest.h>

#include <string>

#include "app/ProcessState.h"
#include "editors/HTMLViewController.h"
#include "editors/HeadlessHtmlView.h"
#include "platform/ImmediateUiThread.h"
#include "platform/Text.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sites/DataPaths.h"
#include "sites/SiteFile.h"
#include "support/Recorders.h"
#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

// The link right after a deleted page title is gone already, so the next one still present
// is looked for up to the site's last link number, which it carries.
TEST(LinkDeletion, ThePageTitleGoesToTheLinkWithTheLastNumber) {
    test::TemporaryHome home;
    const std::string layout = home.dataRoot() + "/Site/sitemap3c.html";
    const std::string title = pageTitleLine("http://h/", 0, "Home");
    const std::string link = linkLine("http://h/c.html", 2, "C");
    const std::string cells = "\n\t<tr valign=\"top\">\n\t\t<td>" + title + link +
                              "\n\t\t</td>\n\t\t<td>&nbsp;</td>\n\t\t<td>&nbsp;</td>\n\t</tr>";
    const std::string html = std::string(htmlSitemapHead()) + std::string(kTableOpening) + cells +
                             "\n</table>\n</body>\n</html>";
    test::writeFile(layout, html);
    test::writeFile(returnFullFileLocation("Site"),
                    newSiteFileText("Site", "http://h/") + "\n<pagesUsed>1</pagesUsed>");
    writeSiteStatistics("Site", 2, 2, 1);

    HeadlessHtmlView view;
    test::RecordingAlerts alerts;
    ImmediateUiThread ui;
    ProcessState process;
    process.vrlmpCurSite = "Site";
    HTMLViewController controller{process, view, alerts, ui, [] { return std::string("Site"); }};
    controller.firstLoad();
    controller.linkClicked("http://h/---LINKID:0---", "Home");
    controller.deleteLinkAction();

    const std::string saved = test::fileContents(layout);
    EXPECT_EQ(saved.find(title), std::string::npos);
    EXPECT_NE(saved.find(replaceAll(link, "zplPageLink", "zplPageTitle")), std::string::npos);
}

}  // namespace
}  // namespace loomcrest
