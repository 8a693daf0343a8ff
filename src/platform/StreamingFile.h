#pragma once

#include <string>
#include <string_view>

#include "platform/FileSystem.h"

namespace loomcrest {

// A file written piece by piece without holding it in memory, yet atomically: the pieces
// go to a temporary file beside the target, which `commit` flushes and renames over it.
// Until then the target keeps what it held; a stream dropped uncommitted leaves no trace.
// The first failure is kept, and once one has happened nothing more is written.
class StreamingFile {
public:
    StreamingFile() = default;
    StreamingFile(const StreamingFile&) = delete;
    StreamingFile& operator=(const StreamingFile&) = delete;
    ~StreamingFile();

    WriteResult open(const std::string& path);
    void write(std::string_view piece);
    WriteResult commit();
    const WriteResult& result() const { return result_; }

private:
    bool flushBuffer();
    void fail(int errorNumber);
    void discard();

    std::string path_;
    std::string temporary_;
    int fd_ = -1;
    std::string buffer_;
    WriteResult result_;
};

}  // namespace loomcrest
