#include "FilterCommands.h"

#include <set>

#include "RowNumber.h"
#include "SiteCommands.h"
#include "SiteSession.h"
#include "app/ProcessState.h"

namespace loomcrest::cli {

namespace {

int deleteRows(SiteSession& session, const std::vector<std::string>& rows, std::ostream& err) {
    if (rows.empty()) {
        err << "filters NAME delete: name at least one row.\n";
        return kExitUsage;
    }
    std::set<size_t> selected;
    for (const std::string& text : rows) {
        const auto row = rowNumber(text);
        if (!row) {
            err << "Not a row number: " << text << "\n";
            return kExitUsage;
        }
        if (*row > vrlmpFiltersArray.size()) {
            err << "No filter in row " << *row << ".\n";
            return kExitRefused;
        }
        selected.insert(*row - 1);
    }
    session.filters().deleteFilter(selected);
    return kExitSuccess;
}

}  // namespace

int runFilterCommand(const std::string& name, const std::vector<std::string>& arguments,
                     std::ostream& out, std::ostream& err) {
    SiteSession session(err);
    if (!session.selectSite(name)) {
        return kExitRefused;
    }
    if (arguments.empty()) {
        for (const std::string& filter : vrlmpFiltersArray) {
            out << filter << '\n';
        }
        return kExitSuccess;
    }
    const std::string& action = arguments.front();
    const std::vector<std::string> rest(arguments.begin() + 1, arguments.end());
    if (action == "add" && rest.size() == 1) {
        session.filters().addFilterCommand(rest.front());
        return session.alerts().anyAlertShown() ? kExitRefused : kExitSuccess;
    }
    if (action == "delete") {
        return deleteRows(session, rest, err);
    }
    err << "Usage: loomcrest filters NAME [add TEXT | delete ROW...]\n";
    return kExitUsage;
}

}  // namespace loomcrest::cli
