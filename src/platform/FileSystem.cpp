#include "platform/FileSystem.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <iterator>

#include "platform/LargeText.h"
#include "platform/Text.h"

namespace fs = std::filesystem;

namespace loomcrest {

namespace {

class FileDescriptor {
public:
    explicit FileDescriptor(int fd) : fd_(fd) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { close(); }

    int get() const { return fd_; }
    bool close() {
        if (fd_ < 0) {
            return true;
        }
        const bool ok = ::close(fd_) == 0;
        fd_ = -1;
        return ok;
    }

private:
    int fd_;
};

bool writeAll(int fd, std::string_view data) {
    while (!data.empty()) {
        const ssize_t written = ::write(fd, data.data(), data.size());
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        data.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

mode_t currentUmask() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return mask;
}

void walkInto(const fs::path& root, const fs::path& relative, std::vector<std::string>& out) {
    std::error_code error;
    fs::directory_iterator it(root / relative, fs::directory_options::skip_permission_denied,
                              error);
    if (error) {
        return;
    }
    std::vector<fs::directory_entry> entries;
    for (; it != fs::directory_iterator(); it.increment(error)) {
        if (error) {
            break;
        }
        entries.push_back(*it);
    }
    std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) {
        return a.path().filename().native() < b.path().filename().native();
    });
    for (const auto& entry : entries) {
        const fs::path entryRelative = relative / entry.path().filename();
        out.push_back(entryRelative.generic_string());
        std::error_code statusError;
        if (entry.is_directory(statusError) && !entry.is_symlink(statusError)) {
            walkInto(root, entryRelative, out);
        }
    }
}

}  // namespace

std::optional<std::string> readTextFile(const std::string& path) {
    FileDescriptor fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status {};
    if (fd.get() < 0 || ::fstat(fd.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    // One buffer of the file's size, filled by read(); a file that grows meanwhile is read on
    // to its end.
    std::string text;
    reserveLargeText(text, static_cast<size_t>(status.st_size));
    text.resize(static_cast<size_t>(status.st_size));
    std::array<char, 4096> more{};
    size_t filled = 0;
    while (true) {
        const bool full = filled == text.size();
        char* into = full ? more.data() : text.data() + filled;
        const size_t room = full ? more.size() : text.size() - filled;
        const ssize_t got = ::read(fd.get(), into, room);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return std::nullopt;
        }
        if (got == 0) {
            break;
        }
        if (full) {
            text.append(more.data(), static_cast<size_t>(got));
        }
        filled += static_cast<size_t>(got);
    }
    text.resize(filled);
    if (!isValidUtf8(text)) {
        return std::nullopt;
    }
    return text;
}

std::optional<std::string> readTextFileUpTo(const std::string& path, std::string_view marker) {
    FileDescriptor fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status {};
    if (fd.get() < 0 || ::fstat(fd.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    std::string text;
    std::array<char, 64 * 1024> chunk{};
    size_t found = std::string::npos;
    while (found == std::string::npos) {
        const ssize_t got = ::read(fd.get(), chunk.data(), chunk.size());
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return std::nullopt;
        }
        if (got == 0) {
            break;
        }
        // The marker may straddle two chunks.
        const size_t from = text.size() >= marker.size() ? text.size() - marker.size() + 1 : 0;
        text.append(chunk.data(), static_cast<size_t>(got));
        found = text.find(marker, from);
    }
    if (found != std::string::npos) {
        text.resize(found);
    }
    if (!isValidUtf8(text)) {
        return std::nullopt;
    }
    return text;
}

bool writeFileAtomically(const std::string& path, std::string_view contents) {
    const fs::path target(path);
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    std::string pattern = (folder / ("." + target.filename().string() + ".XXXXXX")).string();
    FileDescriptor fd(::mkstemp(pattern.data()));
    if (fd.get() < 0) {
        return false;
    }
    // mkstemp creates the file for the owner only; give it the permissions a plain
    // create would, or keep those of the file being replaced.
    struct stat existing {};
    const mode_t mode = ::stat(path.c_str(), &existing) == 0 ? (existing.st_mode & 07777)
                                                             : (0666 & ~currentUmask());
    const bool written =
        ::fchmod(fd.get(), mode) == 0 && writeAll(fd.get(), contents) && ::fsync(fd.get()) == 0;
    if (!fd.close() || !written || ::rename(pattern.c_str(), path.c_str()) != 0) {
        ::unlink(pattern.c_str());
        return false;
    }
    return true;
}

bool appendToFile(const std::string& path, std::string_view piece) {
    FileDescriptor fd(::open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC));
    if (fd.get() < 0) {
        return false;
    }
    const bool written = writeAll(fd.get(), piece);
    return fd.close() && written;
}

bool AppendingFiles::append(const std::string& path, std::string_view piece) {
    auto found = std::find_if(open_.begin(), open_.end(),
                              [&](const auto& entry) { return entry.first == path; });
    if (found == open_.end()) {
        // A missing file is not created; the next append tries again.
        const int fd = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
        if (fd < 0) {
            return false;
        }
        open_.emplace_back(path, fd);
        found = std::prev(open_.end());
    }
    return writeAll(found->second, piece);
}

void AppendingFiles::closeAll() {
    for (const auto& entry : open_) {
        ::close(entry.second);
    }
    open_.clear();
}

bool pathExists(const std::string& path) {
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error)) && !error;
}

bool isDirectory(const std::string& path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

bool createFolder(const std::string& path) {
    std::error_code error;
    return fs::create_directory(path, error);
}

bool createFolderWithParents(const std::string& path) {
    std::error_code error;
    fs::create_directories(path, error);
    return !error && isDirectory(path);
}

bool movePath(const std::string& from, const std::string& to) {
    std::error_code error;
    fs::rename(from, to, error);
    return !error;
}

bool removeFile(const std::string& path) {
    std::error_code error;
    return fs::remove(path, error);
}

bool removeRecursively(const std::string& path) {
    std::error_code error;
    fs::remove_all(path, error);
    return !error;
}

std::vector<std::string> walkFolder(const std::string& root) {
    std::vector<std::string> entries;
    walkInto(fs::path(root), fs::path(), entries);
    return entries;
}

std::string_view pathExtension(std::string_view path) {
    const size_t slash = path.rfind('/');
    const std::string_view name = slash == std::string_view::npos ? path : path.substr(slash + 1);
    const size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0) {
        return {};
    }
    return name.substr(dot + 1);
}

}  // namespace loomcrest
