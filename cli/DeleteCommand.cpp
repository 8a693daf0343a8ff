#include "Commands.h"
#include "SiteSession.h"

namespace loomcrest::cli {

namespace {

// `delete NAME`: the command answers the site list's question with "Delete".
class DeleteCommand : public Command {
public:
    using Command::Command;

    CLI::App& configure(CLI::App& parent) override {
        CLI::App& remove = *parent.add_subcommand("delete", "Delete a site and its folder");
        remove.add_option("NAME", name_, "Site name")->required();
        return remove;
    }

    int run() override {
        SiteSession session(process(), err());
        if (!session.selectSite(name_)) {
            return kExitRefused;
        }
        session.siteRecords().deleteSite();
        return session.exitStatus();
    }

private:
    std::string name_;
};

}  // namespace

std::unique_ptr<Command> makeDeleteCommand(CommandContext& context) {
    return std::make_unique<DeleteCommand>(context);
}

}  // namespace loomcrest::cli
