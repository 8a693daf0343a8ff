#include "SiteSession.h"

#include "sites/DataPaths.h"

namespace loomcrest::cli {

SiteSession::SiteSession(ProcessState& process, std::ostream& err)
    : process_(process),
      err_(err),
      alerts_(err),
      siteList_(process, scanView_, alerts_),
      siteRecords_(siteList_, sheetView_, alerts_),
      filters_(
          process, [this] { return siteList_.state().details.siteName; }, filterView_, alerts_) {
    checkNeededFoldersExist();
    siteList_.awakeFromNib();
}

bool SiteSession::selectSite(const std::string& name) {
    const int row = siteList_.rowOfSite(name);
    if (row < 0) {
        err_ << "No site named \"" << name << "\".\n";
        return false;
    }
    siteList_.selectRow(row);
    return true;
}

void SiteSession::addSite(const std::string& name, const std::string& url) {
    siteRecords_.addNewSite();
    siteRecords_.setSheetFields(name, url);
    siteRecords_.defaultAction();
}

}  // namespace loomcrest::cli
