#pragma once

#include <sys/resource.h>

#include <csignal>

namespace loomcrest::test {

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
