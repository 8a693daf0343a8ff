#include <optional>

#include "Commands.h"
#include "RowNumber.h"
#include "SiteSession.h"
#include "editors/XMLViewController.h"
#include "platform/Json.h"
#include "platform/Text.h"

namespace loomcrest::cli {

namespace {

using Column = XMLViewController::Column;

// `xml NAME [list] [--json]`, `xml NAME set ROW FIELD VALUE`, `xml NAME delete ROW` (rows from 1),
// as the XML sitemap view's table, its cells and its Delete button.
class XmlCommand : public Command {
public:
    using Command::Command;

    CLI::App& configure(CLI::App& parent) override {
        CLI::App& xml = *parent.add_subcommand(
            "xml", "List a scanned site's XML sitemap entries, change one or delete one");
        xml.add_option("NAME", name_, "Site name")->required();
        xml.require_subcommand(0, 1);
        CLI::App& list = *xml.add_subcommand(
            "list",
            "Row, URL, last updated, change frequency, priority, separated by tabs (the "
            "default)");
        for (CLI::App* listing : {&xml, &list}) {
            listing->add_flag("--json", json_,
                              "List the entries as a JSON array of objects: row, loc, lastmod, "
                              "changefreq, priority");
        }
        set_ = xml.add_subcommand("set", "Change one field of an entry");
        set_->add_option("ROW", row_, "Row number, counted from 1")->required();
        set_->add_option("FIELD", field_, "loc, lastmod, changefreq or priority")
            ->required()
            ->check(CLI::IsMember({"loc", "lastmod", "changefreq", "priority"}));
        set_->add_option("VALUE", value_, "The new value")->required();
        delete_ = xml.add_subcommand("delete", "Delete an entry");
        delete_->add_option("ROW", row_, "Row number, counted from 1")->required();
        return xml;
    }

    int run() override {
        SiteSession session(process(), err());
        if (!session.selectSite(name_)) {
            return kExitRefused;
        }
        XMLViewController xml(process(), session.alerts(),
                              [&session] { return session.siteList().state().details.siteName; });
        if (!xml.viewTBIAction()) {
            return kExitRefused;
        }
        if (!set_->parsed() && !delete_->parsed()) {
            listEntries(xml);
            return kExitSuccess;
        }
        const auto row = rowIndex(xml.numberOfRowsInTableView());
        if (!row) {
            return kExitRefused;
        }
        if (set_->parsed()) {
            setField(xml, *row);
        } else {
            xml.selectRow(row);
            xml.delLinkAction();
        }
        return session.exitStatus();
    }

private:
    void listEntries(const XMLViewController& xml) {
        if (json_) {
            listEntriesAsJson(xml);
            return;
        }
        for (size_t row = 0; row < xml.numberOfRowsInTableView(); ++row) {
            out() << row + 1;
            for (const Column column :
                 {Column::URL, Column::LastUpdated, Column::ChangeFrequency, Column::Priority}) {
                out() << '\t' << xml.objectValueForTableColumn(column, row);
            }
            out() << '\n';
        }
    }

    void listEntriesAsJson(const XMLViewController& xml) {
        json::Array entries;
        for (size_t row = 0; row < xml.numberOfRowsInTableView(); ++row) {
            entries.emplace_back(json::Object{
                {"row", static_cast<int64_t>(row + 1)},
                {"loc", xml.objectValueForTableColumn(Column::URL, row)},
                {"lastmod", xml.objectValueForTableColumn(Column::LastUpdated, row)},
                {"changefreq", xml.objectValueForTableColumn(Column::ChangeFrequency, row)},
                {"priority", xml.objectValueForTableColumn(Column::Priority, row)}});
        }
        out() << json::write(entries, json::Layout::Indented) << '\n';
    }

    std::optional<size_t> rowIndex(size_t rows) {
        const auto row = rowNumber(row_);
        if (!row) {
            err() << "Not a row number: " << row_ << "\n";
            return std::nullopt;
        }
        if (*row > rows) {
            err() << "No entry in row " << *row << ".\n";
            return std::nullopt;
        }
        return *row - 1;
    }

    // A value the field's menu offers is chosen from the menu; anything else is typed.
    void setField(XMLViewController& xml, size_t row) {
        if (field_ == "loc") {
            xml.setObjectValue(value_, Column::URL, row);
        } else if (field_ == "lastmod") {
            xml.setObjectValue(value_, Column::LastUpdated, row);
        } else if (field_ == "changefreq") {
            if (indexOf(XMLViewController::kChangeFrequencies, value_)) {
                xml.selectRow(row);
                xml.cfMenuChangeUpdates(value_);
            } else {
                xml.setObjectValue(value_, Column::ChangeFrequency, row);
            }
        } else if (indexOf(XMLViewController::kPriorities, value_)) {
            xml.selectRow(row);
            xml.priorityMenuChangeUpdates(value_);
        } else {
            xml.setObjectValue(value_, Column::Priority, row);
        }
    }

    std::string name_;
    bool json_ = false;
    std::string row_;
    std::string field_;
    std::string value_;
    CLI::App* set_ = nullptr;
    CLI::App* delete_ = nullptr;
};

}  // namespace

std::unique_ptr<Command> makeXmlCommand(CommandContext& context) {
    return std::make_unique<XmlCommand>(context);
}

}  // namespace loomcrest::cli
