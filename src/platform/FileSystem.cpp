#include "platform/FileSystem.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
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

// The errno of the failed write, or 0 when everything was written.
int writeAll(int fd, std::string_view data) {
    while (!data.empty()) {
        const ssize_t written = ::write(fd, data.data(), data.size());
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return errno;
        }
        data.remove_prefix(static_cast<size_t>(written));
    }
    return 0;
}

// The system's reason for the last failed call, kept before anything else can change errno.
int lastError() {
    return errno != 0 ? errno : EIO;
}

WriteResult fromErrorCode(const std::string& path, const std::error_code& error) {
    return error ? WriteResult::failure(path, error.message()) : WriteResult();
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

// One read(2), tried again when a signal broke it off: the bytes read, 0 at the end, -1 on error.
ssize_t readOnce(int fd, char* into, size_t room) {
    while (true) {
        const ssize_t got = ::read(fd, into, room);
        if (got >= 0 || errno != EINTR) {
            return got;
        }
    }
}

}  // namespace

WriteResult WriteResult::failure(std::string path, int errorNumber) {
    return failure(std::move(path), std::string(std::strerror(errorNumber)));
}

WriteResult WriteResult::failure(std::string path, std::string reason) {
    WriteResult result;
    result.failed_ = true;
    result.path_ = std::move(path);
    result.reason_ = std::move(reason);
    return result;
}

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
        const ssize_t got = readOnce(fd.get(), into, room);
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
        const ssize_t got = readOnce(fd.get(), chunk.data(), chunk.size());
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

WriteResult writeFileAtomically(const std::string& path, std::string_view contents) {
    const fs::path target(path);
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    std::string pattern = (folder / ("." + target.filename().string() + ".XXXXXX")).string();
    FileDescriptor fd(::mkstemp(pattern.data()));
    if (fd.get() < 0) {
        return WriteResult::failure(path, lastError());
    }
    // mkstemp creates the file for the owner only; give it the permissions a plain
    // create would, or keep those of the file being replaced.
    struct stat existing {};
    const mode_t mode = ::stat(path.c_str(), &existing) == 0 ? (existing.st_mode & 07777)
                                                             : (0666 & ~currentUmask());
    int error = ::fchmod(fd.get(), mode) == 0 ? 0 : lastError();
    if (error == 0) {
        error = writeAll(fd.get(), contents);
    }
    if (error == 0 && ::fsync(fd.get()) != 0) {
        error = lastError();
    }
    if (!fd.close() && error == 0) {
        error = lastError();
    }
    if (error == 0 && ::rename(pattern.c_str(), path.c_str()) != 0) {
        error = lastError();
    }
    if (error != 0) {
        ::unlink(pattern.c_str());
        return WriteResult::failure(path, error);
    }
    return {};
}

WriteResult appendToFile(const std::string& path, std::string_view piece) {
    FileDescriptor fd(::open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC));
    if (fd.get() < 0) {
        return WriteResult::failure(path, lastError());
    }
    int error = writeAll(fd.get(), piece);
    if (error == 0 && ::fsync(fd.get()) != 0) {
        error = lastError();
    }
    if (!fd.close() && error == 0) {
        error = lastError();
    }
    return error == 0 ? WriteResult() : WriteResult::failure(path, error);
}

WriteResult AppendingFiles::append(const std::string& path, std::string_view piece) {
    auto found = std::find_if(open_.begin(), open_.end(),
                              [&](const OpenFile& file) { return file.path == path; });
    if (found == open_.end()) {
        const int fd = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
        if (fd < 0) {
            return WriteResult::failure(path, lastError());
        }
        found = open_.insert(open_.end(), OpenFile{path, fd});
    }
    return write(*found, piece);
}

WriteResult AppendingFiles::append(const std::string& path,
                                   std::initializer_list<std::string_view> pieces) {
    gathered_.clear();
    for (const std::string_view piece : pieces) {
        gathered_.append(piece);
    }
    return append(path, gathered_);
}

// The disk starts writing a file out every few megabytes, while the scan goes on, so that the
// flush when the files are closed has only the last of them left to wait for.
WriteResult AppendingFiles::write(OpenFile& file, std::string_view piece) {
    constexpr size_t kWriteOutEvery = size_t{4} << 20;
    if (const int error = writeAll(file.fd, piece); error != 0) {
        return WriteResult::failure(file.path, error);
    }
    file.unsent += piece.size();
    if (file.unsent >= kWriteOutEvery) {
        // Only a hint: a failure here shows again, and is reported, when the file is flushed.
        (void)::sync_file_range(file.fd, 0, 0, SYNC_FILE_RANGE_WRITE);
        file.unsent = 0;
    }
    return {};
}

WriteResult AppendingFiles::closeAll() {
    WriteResult result;
    for (const OpenFile& file : open_) {
        int error = ::fsync(file.fd) == 0 ? 0 : lastError();
        if (::close(file.fd) != 0 && error == 0) {
            error = lastError();
        }
        if (error != 0 && result.ok()) {
            result = WriteResult::failure(file.path, error);
        }
    }
    open_.clear();
    return result;
}

bool fileEndsWith(const std::string& path, std::string_view ending) {
    FileDescriptor fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat info {};
    if (fd.get() < 0 || ::fstat(fd.get(), &info) != 0 || !S_ISREG(info.st_mode)) {
        return false;
    }
    // Enough for the ending behind a few trailing line breaks.
    std::array<char, 256> tail{};
    const auto want = static_cast<off_t>(std::min<size_t>(tail.size(), ending.size() + 128));
    const off_t from = std::max<off_t>(0, info.st_size - want);
    const ssize_t got =
        ::pread(fd.get(), tail.data(), static_cast<size_t>(info.st_size - from), from);
    if (got < 0) {
        return false;
    }
    std::string_view text(tail.data(), static_cast<size_t>(got));
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\n' ||
                             text.back() == '\r')) {
        text.remove_suffix(1);
    }
    return text.ends_with(ending);
}

bool pathExists(const std::string& path) {
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error)) && !error;
}

bool isDirectory(const std::string& path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

WriteResult createFolder(const std::string& path) {
    if (::mkdir(path.c_str(), 0777) != 0) {
        return WriteResult::failure(path, lastError());
    }
    return {};
}

bool createFolderWithParents(const std::string& path) {
    std::error_code error;
    fs::create_directories(path, error);
    return !error && isDirectory(path);
}

WriteResult movePath(const std::string& from, const std::string& to) {
    if (::rename(from.c_str(), to.c_str()) != 0) {
        return WriteResult::failure(from, lastError());
    }
    return {};
}

WriteResult linkPath(const std::string& from, const std::string& to) {
    if (::link(from.c_str(), to.c_str()) == 0) {
        return {};
    }
    const int error = lastError();
    if (error != EPERM && error != EOPNOTSUPP && error != EXDEV) {
        return WriteResult::failure(to, error);
    }
    const auto contents = readTextFile(from);
    return contents ? writeFileAtomically(to, *contents) : WriteResult::failure(from, EIO);
}

WriteResult removeFile(const std::string& path) {
    if (::unlink(path.c_str()) != 0 && errno != ENOENT) {
        return WriteResult::failure(path, lastError());
    }
    return {};
}

WriteResult removeRecursively(const std::string& path) {
    std::error_code error;
    fs::remove_all(path, error);
    return fromErrorCode(path, error);
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
