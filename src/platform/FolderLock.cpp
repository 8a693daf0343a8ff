#include "platform/FolderLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace loomcrest {

FolderLock FolderLock::tryLock(const std::string& folder) {
    FolderLock lock;
    const std::string path = folder + "/.lock";
    lock.fd_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (lock.fd_ < 0) {
        lock.failure_ = WriteResult::failure(path, errno);
        return lock;
    }
    int result = 0;
    do {
        result = ::flock(lock.fd_, LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    if (result == 0) {
        lock.outcome_ = Outcome::Held;
    } else if (errno == EWOULDBLOCK) {
        lock.outcome_ = Outcome::Busy;
        lock.closeFile();
    } else {
        lock.failure_ = WriteResult::failure(path, errno);
        lock.closeFile();
    }
    return lock;
}

FolderLock::FolderLock(FolderLock&& other) noexcept
    : fd_(std::exchange(other.fd_, -1)),
      outcome_(std::exchange(other.outcome_, Outcome::Failed)),
      failure_(std::move(other.failure_)) {}

FolderLock& FolderLock::operator=(FolderLock&& other) noexcept {
    if (this != &other) {
        closeFile();
        fd_ = std::exchange(other.fd_, -1);
        outcome_ = std::exchange(other.outcome_, Outcome::Failed);
        failure_ = std::move(other.failure_);
    }
    return *this;
}

FolderLock::~FolderLock() {
    closeFile();
}

void FolderLock::release() {
    closeFile();
    if (outcome_ == Outcome::Held) {
        outcome_ = Outcome::Released;
    }
}

void FolderLock::closeFile() {
    if (fd_ >= 0) {
        // Closing the only descriptor of the open file lets go of its lock.
        ::close(fd_);
        fd_ = -1;
    }
}

}  // namespace loomcrest
