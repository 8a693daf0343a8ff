#pragma once

#include <memory>

#include "Command.h"

// Every command of `loomcrest`, each made in a file of its own.
namespace loomcrest::cli {

std::unique_ptr<Command> makeSitesCommand(CommandContext& context);
std::unique_ptr<Command> makeAddCommand(CommandContext& context);
std::unique_ptr<Command> makeEditCommand(CommandContext& context);
std::unique_ptr<Command> makeDeleteCommand(CommandContext& context);
std::unique_ptr<Command> makeShowCommand(CommandContext& context);
std::unique_ptr<Command> makeRobotsCommand(CommandContext& context);
std::unique_ptr<Command> makeFiltersCommand(CommandContext& context);
std::unique_ptr<Command> makeSettingsCommand(CommandContext& context);
std::unique_ptr<Command> makeScanCommand(CommandContext& context);
std::unique_ptr<Command> makeRestoreCommand(CommandContext& context);
std::unique_ptr<Command> makeDemoCommand(CommandContext& context);
std::unique_ptr<Command> makeXmlCommand(CommandContext& context);
std::unique_ptr<Command> makeHtmlCommand(CommandContext& context);
std::unique_ptr<Command> makeExportCommand(CommandContext& context);
std::unique_ptr<Command> makeValidateCommand(CommandContext& context);
std::unique_ptr<Command> makeBrokenCommand(CommandContext& context);

}  // namespace loomcrest::cli
