#include "SiteCommands.h"

#include "SiteSession.h"
#include "sites/SiteFile.h"

namespace loomcrest::cli {

namespace {

int outcome(SiteSession& session) {
    return session.alerts().anyAlertShown() ? kExitRefused : kExitSuccess;
}

}  // namespace

int listSites(std::ostream& out, std::ostream& err) {
    SiteSession session(err);
    for (const std::string& name : session.siteList().tableArray()) {
        const std::string text = readSiteFile(name);
        out << name << '\t' << readSiteField(text, SiteField::SiteURL).value_or("") << '\t'
            << countForDisplay(readSiteField(text, SiteField::PagesFound)) << '\t'
            << countForDisplay(readSiteField(text, SiteField::TotalLinks)) << '\t'
            << countForDisplay(readSiteField(text, SiteField::PagesUsed)) << '\n';
    }
    return kExitSuccess;
}

int addSite(const std::string& name, const std::string& url, std::ostream& err) {
    SiteSession session(err);
    AddEditDeleteSites& records = session.siteRecords();
    records.addNewSite();
    records.setSheetFields(name, url);
    records.defaultAction();
    return outcome(session);
}

int editSite(const EditRequest& request, std::ostream& err) {
    SiteSession session(err);
    if (!session.selectSite(request.name)) {
        return kExitRefused;
    }
    AddEditDeleteSites& records = session.siteRecords();
    records.editSite();
    if (!records.sheetState().shown) {
        err << "The site file of \"" << request.name << "\" holds no site name.\n";
        return kExitRefused;
    }
    const SiteSheetState& sheet = records.sheetState();
    records.setSheetFields(request.newName.value_or(sheet.siteName),
                           request.newURL.value_or(sheet.siteURL));
    records.defaultAction();
    return outcome(session);
}

int deleteSite(const std::string& name, std::ostream& err) {
    SiteSession session(err);
    if (!session.selectSite(name)) {
        return kExitRefused;
    }
    session.siteRecords().deleteSite();
    return outcome(session);
}

int showSite(const std::string& name, std::ostream& out, std::ostream& err) {
    SiteSession session(err);
    if (!session.selectSite(name)) {
        return kExitRefused;
    }
    const ScanViewState& state = session.siteList().state();
    const SiteDetailsFields& details = state.details;
    out << "Name: " << details.siteName << '\n'
        << "URL: " << details.siteURL << '\n'
        << "Ignore robots: " << (state.ignoreRobotsChecked ? "yes" : "no") << '\n'
        << "Total links: " << details.totalLinksFound << '\n'
        << "Pages found: " << details.pagesFound << '\n'
        << "Pages used: " << details.linksScanned << '\n'
        << "Broken links: " << details.brokenLinks << '\n';
    return kExitSuccess;
}

int setIgnoreRobots(const std::string& name, bool ignore, std::ostream& err) {
    SiteSession session(err);
    if (!session.selectSite(name)) {
        return kExitRefused;
    }
    session.siteList().ignoreRobotsAction(ignore);
    return kExitSuccess;
}

}  // namespace loomcrest::cli
