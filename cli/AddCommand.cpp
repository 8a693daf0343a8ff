#include "Commands.h"
#include "SiteSession.h"

namespace loomcrest::cli {

namespace {

// `add NAME URL`.
class AddCommand : public Command {
public:
    using Command::Command;

    CLI::App& configure(CLI::App& parent) override {
        CLI::App& add = *parent.add_subcommand("add", "Add a site");
        add.add_option("NAME", name_, "Site name")->required();
        add.add_option("URL", url_, "Start URL")->required();
        return add;
    }

    int run() override {
        SiteSession session(process(), err());
        session.addSite(name_, url_);
        return session.exitStatus();
    }

private:
    std::string name_;
    std::string url_;
};

}  // namespace

std::unique_ptr<Command> makeAddCommand(CommandContext& context) {
    return std::make_unique<AddCommand>(context);
}

}  // namespace loomcrest::cli
