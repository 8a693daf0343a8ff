#include "XmlCommands.h"

#include <algorithm>
#include <optional>

#include "RowNumber.h"
#include "SiteCommands.h"
#include "SiteSession.h"
#include "editors/XMLViewController.h"
#include "platform/Text.h"

namespace loomcrest::cli {

namespace {

using Column = XMLViewController::Column;

std::optional<size_t> rowIndex(const std::string& text, size_t rows, std::ostream& err) {
    const auto row = rowNumber(text);
    if (!row) {
        err << "Not a row number: " << text << "\n";
        return std::nullopt;
    }
    if (*row > rows) {
        err << "No entry in row " << *row << ".\n";
        return std::nullopt;
    }
    return *row - 1;
}

// A value the field's menu offers is chosen from the menu; anything else is typed.
void setField(XMLViewController& xml, size_t row, const std::string& field,
              const std::string& value) {
    if (field == "loc") {
        xml.setObjectValue(value, Column::URL, row);
    } else if (field == "lastmod") {
        xml.setObjectValue(value, Column::LastUpdated, row);
    } else if (field == "changefreq") {
        if (indexOf(XMLViewController::kChangeFrequencies, value)) {
            xml.selectRow(row);
            xml.cfMenuChangeUpdates(value);
        } else {
            xml.setObjectValue(value, Column::ChangeFrequency, row);
        }
    } else {
        if (indexOf(XMLViewController::kPriorities, value)) {
            xml.selectRow(row);
            xml.priorityMenuChangeUpdates(value);
        } else {
            xml.setObjectValue(value, Column::Priority, row);
        }
    }
}

int listEntries(const XMLViewController& xml, std::ostream& out) {
    for (size_t row = 0; row < xml.numberOfRowsInTableView(); ++row) {
        out << row + 1;
        for (const Column column :
             {Column::URL, Column::LastUpdated, Column::ChangeFrequency, Column::Priority}) {
            out << '\t' << xml.objectValueForTableColumn(column, row);
        }
        out << '\n';
    }
    return kExitSuccess;
}

}  // namespace

int runXmlCommand(const std::string& name, const std::vector<std::string>& arguments,
                  std::ostream& out, std::ostream& err) {
    SiteSession session(err);
    if (!session.selectSite(name)) {
        return kExitRefused;
    }
    XMLViewController xml(session.alerts(),
                          [&session] { return session.siteList().state().details.siteName; });
    if (!xml.viewTBIAction()) {
        return kExitRefused;
    }
    const auto usage = [&err] {
        err << "Usage: loomcrest xml NAME [set ROW loc|lastmod|changefreq|priority VALUE | "
               "delete ROW]\n";
        return kExitUsage;
    };
    if (arguments.empty()) {
        return listEntries(xml, out);
    }
    const std::string& action = arguments[0];
    if (action == "set" && arguments.size() == 4) {
        const std::string& field = arguments[2];
        if (field != "loc" && field != "lastmod" && field != "changefreq" && field != "priority") {
            return usage();
        }
        const auto row = rowIndex(arguments[1], xml.numberOfRowsInTableView(), err);
        if (!row) {
            return kExitRefused;
        }
        setField(xml, *row, field, arguments[3]);
    } else if (action == "delete" && arguments.size() == 2) {
        const auto row = rowIndex(arguments[1], xml.numberOfRowsInTableView(), err);
        if (!row) {
            return kExitRefused;
        }
        xml.selectRow(row);
        xml.delLinkAction();
    } else {
        return usage();
    }
    return session.alerts().anyAlertShown() ? kExitRefused : kExitSuccess;
}

}  // namespace loomcrest::cli
