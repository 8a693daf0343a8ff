#include "platform/StreamingFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

namespace loomcrest {

namespace {

constexpr size_t kBufferSize = size_t{64} * 1024;

int lastError() {
    return errno != 0 ? errno : EIO;
}

}  // namespace

StreamingFile::~StreamingFile() {
    discard();
}

WriteResult StreamingFile::open(const std::string& path) {
    discard();
    path_ = path;
    result_ = {};
    const std::filesystem::path target(path);
    const std::filesystem::path folder =
        target.has_parent_path() ? target.parent_path() : std::filesystem::path(".");
    temporary_ = (folder / ("." + target.filename().string() + ".XXXXXX")).string();
    fd_ = ::mkstemp(temporary_.data());
    if (fd_ < 0) {
        temporary_.clear();
        fail(lastError());
        return result_;
    }
    // mkstemp makes the file private; a plain create would honour the umask instead.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    if (::fchmod(fd_, 0666 & ~mask) != 0) {
        fail(lastError());
    }
    buffer_.reserve(kBufferSize);
    return result_;
}

void StreamingFile::write(std::string_view piece) {
    if (fd_ < 0 || !result_) {
        return;
    }
    buffer_.append(piece);
    if (buffer_.size() >= kBufferSize) {
        (void)flushBuffer();
    }
}

bool StreamingFile::flushBuffer() {
    std::string_view data(buffer_);
    while (!data.empty()) {
        const ssize_t written = ::write(fd_, data.data(), data.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written < 0) {
            fail(lastError());
            return false;
        }
        data.remove_prefix(static_cast<size_t>(written));
    }
    buffer_.clear();
    return true;
}

WriteResult StreamingFile::commit() {
    if (fd_ < 0 || !result_) {
        discard();
        return result_;
    }
    if (flushBuffer() && ::fsync(fd_) != 0) {
        fail(lastError());
    }
    const int fd = fd_;
    fd_ = -1;
    if (::close(fd) != 0 && result_) {
        fail(lastError());
    }
    if (result_ && ::rename(temporary_.c_str(), path_.c_str()) != 0) {
        fail(lastError());
    }
    if (result_) {
        temporary_.clear();
    }
    discard();
    return result_;
}

void StreamingFile::fail(int errorNumber) {
    if (result_) {
        result_ = WriteResult::failure(path_, errorNumber);
    }
}

void StreamingFile::discard() {
    if (fd_ >= 0) {
        ::close(fd_);
        fd_ = -1;
    }
    if (!temporary_.empty()) {
        ::unlink(temporary_.c_str());
        temporary_.clear();
    }
    buffer_.clear();
}

}  // namespace loomcrest
