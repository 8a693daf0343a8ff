#pragma once

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

}  // namespace loomcrest::test
