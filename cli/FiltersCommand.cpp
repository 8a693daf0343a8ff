#include <set>
#include <vector>

#include "Commands.h"
#include "RowNumber.h"
#include "SiteSession.h"

namespace loomcrest::cli {

namespace {

// `filters NAME [list]`, `filters NAME add TEXT`, `filters NAME delete ROW...` (rows from 1),
// as the filters drawer's table, field, Add and Delete.
class FiltersCommand : public Command {
public:
    using Command::Command;

    CLI::App& configure(CLI::App& parent) override {
        CLI::App& filters = *parent.add_subcommand(
            "filters", "List a site's filters, add one or delete some (rows from 1)");
        filters.add_option("NAME", name_, "Site name")->required();
        filters.require_subcommand(0, 1);
        filters.add_subcommand("list", "List the filters, one per line (the default)");
        add_ = filters.add_subcommand("add", "Add a filter");
        add_->add_option("TEXT", text_, "Links whose URL contains it are left out")->required();
        delete_ = filters.add_subcommand("delete", "Delete filters by row number");
        delete_->add_option("ROW", rows_, "Row numbers, counted from 1")->required();
        return filters;
    }

    int run() override {
        SiteSession session(process(), err());
        if (!session.selectSite(name_)) {
            return kExitRefused;
        }
        if (add_->parsed()) {
            session.filters().addFilterCommand(text_);
            return session.exitStatus();
        }
        if (delete_->parsed()) {
            const int status = deleteRows(session.filters());
            return status == kExitSuccess ? session.exitStatus() : status;
        }
        for (size_t row = 0; row < session.filters().filterArrayLength(); ++row) {
            out() << session.filters().filterArrayObject(row) << '\n';
        }
        return kExitSuccess;
    }

private:
    int deleteRows(ScanFilters& filters) {
        std::set<size_t> selected;
        for (const std::string& text : rows_) {
            const auto row = rowNumber(text);
            if (!row) {
                err() << "Not a row number: " << text << "\n";
                return kExitUsage;
            }
            if (*row > filters.filterArrayLength()) {
                err() << "No filter in row " << *row << ".\n";
                return kExitRefused;
            }
            selected.insert(*row - 1);
        }
        filters.deleteFilter(selected);
        return kExitSuccess;
    }

    std::string name_;
    std::string text_;
    std::vector<std::string> rows_;
    CLI::App* add_ = nullptr;
    CLI::App* delete_ = nullptr;
};

}  // namespace

std::unique_ptr<Command> makeFiltersCommand(CommandContext& context) {
    return std::make_unique<FiltersCommand>(context);
}

}  // namespace loomcrest::cli
