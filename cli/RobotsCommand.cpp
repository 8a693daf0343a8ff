#include "Commands.h"
#include "SiteSession.h"

namespace loomcrest::cli {

namespace {

// `robots NAME ignore|obey`: the site's ignore-robots check box.
class RobotsCommand : public Command {
public:
    using Command::Command;

    CLI::App& configure(CLI::App& parent) override {
        CLI::App& robots =
            *parent.add_subcommand("robots", "Ignore or obey the site's robots.txt rules");
        robots.add_option("NAME", name_, "Site name")->required();
        robots.add_option("RULES", choice_, "ignore or obey")
            ->required()
            ->check(CLI::IsMember({"ignore", "obey"}));
        return robots;
    }

    int run() override {
        SiteSession session(process(), err());
        if (!session.selectSite(name_)) {
            return kExitRefused;
        }
        session.siteList().ignoreRobotsAction(choice_ == "ignore");
        return session.exitStatus();
    }

private:
    std::string name_;
    std::string choice_;
};

}  // namespace

std::unique_ptr<Command> makeRobotsCommand(CommandContext& context) {
    return std::make_unique<RobotsCommand>(context);
}

}  // namespace loomcrest::cli
