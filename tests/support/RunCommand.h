#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <initializer_list>
#include <string>

#include "support/TemporaryHome.h"

namespace loomcrest::test {

struct CommandResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};

inline std::string shellQuoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quoted + "'";
}

// Runs the real `loomcrest` binary with $HOME pointing at `home`, capturing both streams.
inline CommandResult runLoomcrest(const TemporaryHome& home,
                                  std::initializer_list<std::string> arguments) {
    const std::string outPath = home.path() + "/.stdout";
    const std::string errPath = home.path() + "/.stderr";
    std::string command = "HOME=" + shellQuoted(home.path()) + " " + LOOMCREST_CLI_PATH;
    for (const std::string& argument : arguments) {
        command += " " + shellQuoted(argument);
    }
    command += " >" + shellQuoted(outPath) + " 2>" + shellQuoted(errPath) + " </dev/null";
    const int status = std::system(command.c_str());
    CommandResult result;
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.out = fileContents(outPath);
    result.err = fileContents(errPath);
    std::remove(outPath.c_str());
    std::remove(errPath.c_str());
    return result;
}

}  // namespace loomcrest::test
