#include "export/ExportFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <system_error>
#include <vector>

namespace loomcrest {

namespace {

// Links followed before giving up, as the kernel's own limit.
constexpr int kMostLinksFollowed = 40;

std::string systemReason(int error) {
    return std::error_code(error, std::generic_category()).message();
}

std::string folderOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

// The file a path finally names once every symbolic link on its last component is
// followed; the error when a link cannot be read or they go round in a circle.
std::optional<int> followLinks(std::string& path) {
    for (int followed = 0; followed < kMostLinksFollowed; ++followed) {
        struct stat status {};
        if (::lstat(path.c_str(), &status) != 0) {
            return errno == ENOENT ? std::nullopt : std::optional(errno);
        }
        if (!S_ISLNK(status.st_mode)) {
            return std::nullopt;
        }
        std::string target(static_cast<size_t>(status.st_size > 0 ? status.st_size : 4096) + 1,
                           '\0');
        const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
        if (length < 0) {
            return errno;
        }
        target.resize(static_cast<size_t>(length));
        path = target.starts_with('/') ? target : folderOf(path) + "/" + target;
    }
    return ELOOP;
}

class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& beside) {
        const size_t slash = beside.rfind('/');
        const std::string name = slash == std::string::npos ? beside : beside.substr(slash + 1);
        path_ = folderOf(beside) + "/." + name + ".XXXXXX";
        fd_ = ::mkstemp(path_.data());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (fd_ >= 0) {
            ::close(fd_);
        }
        if (!renamed_) {
            ::unlink(path_.c_str());
        }
    }

    bool opened() const { return fd_ >= 0; }
    bool write(std::string_view bytes) {
        while (!bytes.empty()) {
            const ssize_t written = ::write(fd_, bytes.data(), bytes.size());
            if (written < 0 && errno != EINTR) {
                return false;
            }
            bytes.remove_prefix(written < 0 ? 0 : static_cast<size_t>(written));
        }
        return true;
    }
    // Gives the file the mode `target` has (or a new file's), then flushes and closes it.
    bool finish(const std::string& target) {
        struct stat existing {};
        const bool exists = ::stat(target.c_str(), &existing) == 0;
        const mode_t mask = ::umask(0);
        ::umask(mask);
        const mode_t mode = exists ? (existing.st_mode & 07777) : (0666 & ~mask);
        if (::fchmod(fd_, mode) != 0 || ::fsync(fd_) != 0) {
            return false;
        }
        const int fd = fd_;
        fd_ = -1;
        return ::close(fd) == 0;
    }
    bool renameOnto(const std::string& target) {
        renamed_ = ::rename(path_.c_str(), target.c_str()) == 0;
        return renamed_;
    }

private:
    std::string path_;
    int fd_ = -1;
    bool renamed_ = false;
};

}  // namespace

std::optional<ExportWriteFailure> writeExportFile(const std::string& path, std::string_view bytes) {
    const ExportFileContents file{path, bytes};
    return writeExportFiles({&file, 1});
}

std::optional<ExportWriteFailure> writeExportFiles(std::span<const ExportFileContents> files) {
    std::vector<std::string> targets;
    std::vector<std::unique_ptr<TemporaryFile>> temporaries;
    for (const auto& [path, bytes] : files) {
        if (path.empty()) {
            return ExportWriteFailure{path, "No file name was given"};
        }
        std::string target = path;
        if (const auto error = followLinks(target)) {
            return ExportWriteFailure{path, systemReason(*error)};
        }
        struct stat status {};
        if (::stat(target.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
            return ExportWriteFailure{path, systemReason(EISDIR)};
        }
        auto& temporary = *temporaries.emplace_back(std::make_unique<TemporaryFile>(target));
        if (!temporary.opened() || !temporary.write(bytes) || !temporary.finish(target)) {
            return ExportWriteFailure{path, systemReason(errno)};
        }
        targets.push_back(std::move(target));
    }
    // Every file is written in full before the first one takes its place.
    for (size_t i = 0; i < files.size(); ++i) {
        if (!temporaries[i]->renameOnto(targets[i])) {
            return ExportWriteFailure{files[i].path, systemReason(errno)};
        }
    }
    return std::nullopt;
}

Alert exportWriteRefusal(const ExportWriteFailure& failure) {
    if (failure.path.empty()) {
        return Alert::refusal("The export could not be written.", failure.reason + ".");
    }
    return Alert::refusal("The export could not be written to \"" + failure.path + "\".",
                          failure.reason + ".");
}

}  // namespace loomcrest
