#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <optional>
#include <string>
#include <vector>

#include "support/TemporaryHome.h"

namespace loomcrest::test {

struct CommandResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};

// Reads the child's two streams into `result` until both are closed.
inline void readUntilClosed(int out, int err, CommandResult& result) {
    std::array<pollfd, 2> streams{pollfd{out, POLLIN, 0}, pollfd{err, POLLIN, 0}};
    std::array<std::string*, 2> texts{&result.out, &result.err};
    int openStreams = 2;
    while (openStreams > 0 && poll(streams.data(), streams.size(), -1) > 0) {
        for (size_t i = 0; i < streams.size(); ++i) {
            if (streams[i].fd < 0 || streams[i].revents == 0) {
                continue;
            }
            std::array<char, 4096> buffer{};
            const ssize_t got = read(streams[i].fd, buffer.data(), buffer.size());
            if (got <= 0) {
                close(streams[i].fd);
                streams[i].fd = -1;
                --openStreams;
            } else {
                texts[i]->append(buffer.data(), static_cast<size_t>(got));
            }
        }
    }
}

// Runs the real `loomcrest` binary with $HOME pointing at `home` and standard input empty,
// capturing both streams through pipes. With `fileSizeLimit` it may write no file past that
// many bytes, as on a full disk; the limit does not touch the pipes. `started`, when given,
// receives the process id, so another thread can signal the run.
inline CommandResult runLoomcrest(const TemporaryHome& home,
                                  const std::vector<std::string>& arguments,
                                  rlim_t fileSizeLimit = RLIM_INFINITY,
                                  std::atomic<pid_t>* started = nullptr) {
    std::vector<std::string> argumentTexts{LOOMCREST_CLI_PATH};
    argumentTexts.insert(argumentTexts.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& text : argumentTexts) {
        argv.push_back(text.data());
    }
    argv.push_back(nullptr);
    // The child inherits $HOME, which `home` points at its folder while it lives.
    EXPECT_EQ(std::getenv("HOME"), home.path());
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
        dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
        close(out[0]);
        close(err[0]);
        const rlimit limit{fileSizeLimit, fileSizeLimit};
        setrlimit(RLIMIT_FSIZE, &limit);
        execv(argv[0], argv.data());
        _exit(127);
    }
    if (started != nullptr) {
        *started = child;
    }
    close(out[1]);
    close(err[1]);
    CommandResult result;
    readUntilClosed(out[0], err[0], result);
    int status = 0;
    waitpid(child, &status, 0);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

// One run of the command line and all it must give back; std::nullopt leaves that stream
// unchecked.
struct Step {
    std::vector<std::string> arguments;
    int exitCode = 0;
    std::optional<std::string> out = std::string();
    std::optional<std::string> err = std::string();
};

// A temporary home for the command line, and runs of it one after another.
class CommandLineTest : public testing::Test {
protected:
    CommandResult run(const std::vector<std::string>& arguments) const {
        return runLoomcrest(home, arguments);
    }
    void expectSteps(const std::vector<Step>& steps) const {
        for (const Step& step : steps) {
            const CommandResult result = run(step.arguments);
            std::string command = "loomcrest";
            for (const std::string& argument : step.arguments) {
                command += " " + argument;
            }
            EXPECT_EQ(result.exitCode, step.exitCode) << command << "\n" << result.err;
            if (step.out) {
                EXPECT_EQ(result.out, *step.out) << command;
            }
            if (step.err) {
                EXPECT_EQ(result.err, *step.err) << command;
            }
        }
    }
    // A file in the folder of the site `name`.
    std::string siteFile(const std::string& name, const std::string& file) const {
        return home.dataRoot() + "/" + name + "/" + file;
    }

    TemporaryHome home;
};

}  // namespace loomcrest::test
