#pragma once

#include <string>

#include "platform/FileSystem.h"

namespace loomcrest {

// An exclusive advisory lock (flock) on a folder, held through the file ".lock" in it for
// the lifetime of the object. Another holder, in this process or another, makes a second
// attempt fail at once rather than wait: two writers of one folder would interleave.
class FolderLock {
public:
    enum class Outcome { Held, Busy, Failed, Released };

    // Tries once and never waits.
    static FolderLock tryLock(const std::string& folder);

    FolderLock(FolderLock&& other) noexcept;
    FolderLock& operator=(FolderLock&& other) noexcept;
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    ~FolderLock();

    Outcome outcome() const { return outcome_; }
    bool held() const { return outcome_ == Outcome::Held; }
    // Why the lock file could not be opened or locked, when Failed.
    const WriteResult& failure() const { return failure_; }
    // Lets go of the lock before the object goes.
    void release();

private:
    FolderLock() = default;
    void closeFile();

    int fd_ = -1;
    Outcome outcome_ = Outcome::Failed;
    WriteResult failure_;
};

}  // namespace loomcrest
