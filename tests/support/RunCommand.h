#pragma once

#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <initializer_list>
#include <string>
#include <vector>

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

// Runs the binary as runLoomcrest does, but allowed to write no file past `bytes`, as on a
// full disk. Its output goes through pipes, which the limit does not touch.
inline CommandResult runLoomcrestWithFileSizeLimit(const TemporaryHome& home, rlim_t bytes,
                                                   const std::vector<std::string>& arguments) {
    std::vector<std::string> argumentTexts{LOOMCREST_CLI_PATH};
    argumentTexts.insert(argumentTexts.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& text : argumentTexts) {
        argv.push_back(text.data());
    }
    argv.push_back(nullptr);
    std::string homeVariable = "HOME=" + home.path();
    std::array<char*, 2> environment{homeVariable.data(), nullptr};
    std::array<int, 2> out{};
    std::array<int, 2> err{};
    if (pipe(out.data()) != 0 || pipe(err.data()) != 0) {
        return {};
    }
    const pid_t child = fork();
    if (child == 0) {
        // Only async-signal-safe calls until exec: the test process has threads.
        dup2(out[1], STDOUT_FILENO);
        dup2(err[1], STDERR_FILENO);
        close(out[0]);
        close(err[0]);
        const rlimit limit{bytes, bytes};
        setrlimit(RLIMIT_FSIZE, &limit);
        execve(argv[0], argv.data(), environment.data());
        _exit(127);
    }
    close(out[1]);
    close(err[1]);
    CommandResult result;
    std::array<pollfd, 2> streams{pollfd{out[0], POLLIN, 0}, pollfd{err[0], POLLIN, 0}};
    std::array<std::string*, 2> texts{&result.out, &result.err};
    int open = 2;
    while (open > 0 && poll(streams.data(), streams.size(), -1) > 0) {
        for (size_t i = 0; i < streams.size(); ++i) {
            if (streams[i].fd < 0 || streams[i].revents == 0) {
                continue;
            }
            std::array<char, 4096> buffer{};
            const ssize_t got = read(streams[i].fd, buffer.data(), buffer.size());
            if (got <= 0) {
                close(streams[i].fd);
                streams[i].fd = -1;
                --open;
            } else {
                texts[i]->append(buffer.data(), static_cast<size_t>(got));
            }
        }
    }
    int status = 0;
    waitpid(child, &status, 0);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

}  // namespace loomcrest::test
