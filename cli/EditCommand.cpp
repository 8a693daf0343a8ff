#include <optional>

#include "Commands.h"
#include "SiteSession.h"

namespace loomcrest::cli {

namespace {

// `edit NAME [--name NEW] [--url URL]`: the fields not given keep their values.
class EditCommand : public Command {
public:
    using Command::Command;

    CLI::App& configure(CLI::App& parent) override {
        CLI::App& edit = *parent.add_subcommand(
            "edit", "Edit or rename a site; fields not given keep their values");
        edit.add_option("NAME", name_, "Site name")->required();
        edit.add_option("--name", newName_, "New site name");
        edit.add_option("--url", newURL_, "New start URL");
        return edit;
    }

    int run() override {
        SiteSession session(process(), err());
        if (!session.selectSite(name_)) {
            return kExitRefused;
        }
        AddEditDeleteSites& records = session.siteRecords();
        records.editSite();
        if (!records.sheetState().shown) {
            err() << "The site file of \"" << name_ << "\" holds no site name.\n";
            return kExitRefused;
        }
        const SiteSheetState& sheet = records.sheetState();
        records.setSheetFields(newName_.value_or(sheet.siteName), newURL_.value_or(sheet.siteURL));
        records.defaultAction();
        return session.exitStatus();
    }

private:
    std::string name_;
    std::optional<std::string> newName_;
    std::optional<std::string> newURL_;
};

}  // namespace

std::unique_ptr<Command> makeEditCommand(CommandContext& context) {
    return std::make_unique<EditCommand>(context);
}

}  // namespace loomcrest::cli
