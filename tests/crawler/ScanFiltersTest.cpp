#include "crawler/ScanFilters.h"

#include <gtest/gtest.h>

#include "app/ProcessState.h"
#include "platform/FileSystem.h"
#include "sites/DataPaths.h"
#include "support/Recorders.h"
#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

using namespace test;

class RecordingFilterView : public FilterView {
public:
    void reloadFilterTable() override { ++reloads; }
    void clearNewFilterInput() override { ++clears; }
    int reloads = 0;
    int clears = 0;
};

class Filters : public testing::Test {
protected:
    void SetUp() override {
        checkNeededFoldersExist();
        createFolder(siteFolderLocation("Example"));
    }
    std::string filterFile() const { return home.dataRoot() + "/Example/filters.zplp"; }

    TemporaryHome home;
    std::string shownName = "Example";
    RecordingFilterView view;
    RecordingAlerts alerts;
    ProcessState process;
    ScanFilters filters{process, [this] { return shownName; }, view, alerts};
};

TEST_F(Filters, SelectingASiteCreatesAndLoadsItsFile) {
    process.notifications.post("vrlmpLFF");
    EXPECT_TRUE(pathExists(filterFile()));
    EXPECT_EQ(fileContents(filterFile()), "");
    EXPECT_TRUE(process.vrlmpFiltersArray.empty());
    EXPECT_EQ(view.reloads, 1);

    writeFile(filterFile(), "tmp\n\nPDF\n  spaced  \n");
    process.notifications.post("vrlmpLFF");
    EXPECT_EQ(process.vrlmpFiltersArray, (std::vector<std::string>{"tmp", "PDF", "  spaced  "}));
    EXPECT_EQ(filters.filterArrayObject(1), "PDF");
    EXPECT_EQ(filters.filterArrayObject(7), "");
    // The place after the last filter held one, so reading it would show that filter again.
    process.vrlmpFiltersArray.pop_back();
    EXPECT_EQ(filters.filterArrayObject(2), "");
}

TEST_F(Filters, AddingKeepsBlanksTrimsBreaksAllowsDuplicatesButRefusesNothingOrAnUnreadableFile) {
    filters.loadFilterFile();
    filters.addFilterCommand("");
    EXPECT_EQ(
        alerts.described(),
        std::vector<std::string>{"Refusal: Cannot Add Filter | There is nothing to add! [OK]"});
    EXPECT_EQ(view.clears, 0);
    filters.addFilterCommand("  tmp  ");
    filters.addFilterCommand("\r\nPDF\n");
    filters.addFilterCommand("PDF");
    EXPECT_EQ(fileContents(filterFile()), "  tmp  \nPDF\nPDF\n");
    EXPECT_EQ(process.vrlmpFiltersArray, (std::vector<std::string>{"  tmp  ", "PDF", "PDF"}));
    EXPECT_EQ(view.clears, 3);
    EXPECT_EQ(alerts.shown.size(), 1U);

    // Nothing is written over an unreadable file, or without a site.
    writeFile(filterFile(), "caf\xe9\n");
    filters.loadFilterFile();
    EXPECT_TRUE(process.vrlmpFiltersArray.empty());
    filters.addFilterCommand("new");
    EXPECT_EQ(fileContents(filterFile()), "caf\xe9\n");
    shownName.clear();
    filters.loadFilterFile();
    filters.addFilterCommand("x");
    EXPECT_TRUE(process.vrlmpFiltersArray.empty());
    EXPECT_FALSE(pathExists(home.dataRoot() + "/filters.zplp"));
}

}  // namespace
}  // namespace loomcrest
