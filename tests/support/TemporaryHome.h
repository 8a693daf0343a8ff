#pragma once

#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>

#include "sites/DataPaths.h"

namespace loomcrest::test {

// Points $HOME at a fresh folder for the lifetime of the object, so every path the core
// builds lands there.
class TemporaryHome {
public:
    TemporaryHome() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "loomcrest-test-XXXXXX").string();
        path_ = mkdtemp(pattern.data());
        if (const char* previous = std::getenv("HOME")) {
            previousHome_ = previous;
        }
        setenv("HOME", path_.c_str(), 1);
    }
    TemporaryHome(const TemporaryHome&) = delete;
    TemporaryHome& operator=(const TemporaryHome&) = delete;
    ~TemporaryHome() {
        if (previousHome_) {
            setenv("HOME", previousHome_->c_str(), 1);
        } else {
            unsetenv("HOME");
        }
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::string& path() const { return path_; }
    std::string dataRoot() const {
        return path_ + "/Library/Application Support/Quillmoor/Loomcrest";
    }

private:
    std::string path_;
    std::optional<std::string> previousHome_;
};

inline std::string fileContents(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream contents;
    contents << in.rdbuf();
    return contents.str();
}

inline void writeFile(const std::string& path, const std::string& contents) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << contents;
}

// Lets this process write no file past `bytes` while the object lives, with SIGXFSZ
// ignored, so a write beyond fails with EFBIG as it would on a full disk. Works for any
// user, unlike a small file system that needs mounting.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &previous_);
        previousHandler_ = std::signal(SIGXFSZ, SIG_IGN);
        rlimit lowered = previous_;
        lowered.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &lowered);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &previous_);
        std::signal(SIGXFSZ, previousHandler_);
    }

private:
    rlimit previous_{};
    void (*previousHandler_)(int) = nullptr;
};

}  // namespace loomcrest::test
