#pragma once

#include <CLI/CLI.hpp>
#include <ostream>

#include "app/ProcessState.h"

namespace loomcrest::cli {

inline constexpr int kExitSuccess = 0;
// The action was refused by an alert, or named no site.
inline constexpr int kExitRefused = 1;
inline constexpr int kExitUsage = 2;
// `scan --fail-on-broken` found broken links.
inline constexpr int kExitBrokenLinks = 3;

// What every command of one run works with.
struct CommandContext {
    std::ostream& out;
    std::ostream& err;
    ProcessState& process;
};

// One command of the command line: it declares its subcommand, options and nested
// subcommands, and runs once the whole line has been parsed.
class Command {
public:
    explicit Command(CommandContext& context) : context_(context) {}
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;
    virtual ~Command() = default;

    // Adds the command's subcommand to `parent` and returns it.
    virtual CLI::App& configure(CLI::App& parent) = 0;
    // Does what the parsed line asks; returns the exit status.
    virtual int run() = 0;

protected:
    std::ostream& out() { return context_.out; }
    std::ostream& err() { return context_.err; }
    ProcessState& process() { return context_.process; }
    CommandContext& context() { return context_; }

private:
    CommandContext& context_;
};

}  // namespace loomcrest::cli
