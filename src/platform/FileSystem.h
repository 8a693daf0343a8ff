#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace loomcrest {

// The outcome of a change on disk: done, or the path that failed and the system's reason
// ("No space left on device"), so that the user can be told which file and why.
class WriteResult {
public:
    WriteResult() = default;
    // A failure of `path` with the reason of `errorNumber` (an errno value).
    static WriteResult failure(std::string path, int errorNumber);
    static WriteResult failure(std::string path, std::string reason);

    bool ok() const { return !failed_; }
    explicit operator bool() const { return ok(); }
    const std::string& path() const { return path_; }
    const std::string& reason() const { return reason_; }
    // "PATH: reason", the message of an alert about the failure.
    std::string message() const { return path_ + ": " + reason_; }

private:
    bool failed_ = false;
    std::string path_;
    std::string reason_;
};

// The whole file as UTF-8 text; nothing when it is missing, unreadable or not valid UTF-8.
std::optional<std::string> readTextFile(const std::string& path);
// The file's text up to, not including, the first `marker`, read no further than needed; the
// whole text when the marker is missing. Nothing when the file is missing or unreadable, or
// what was read is not valid UTF-8.
std::optional<std::string> readTextFileUpTo(const std::string& path, std::string_view marker);

// Writes into a temporary file beside `path`, flushes it to the disk, then renames it over
// `path`, so a reader sees either the old or the new contents and a failed write leaves the
// old file alone (and no temporary file behind).
WriteResult writeFileAtomically(const std::string& path, std::string_view contents);

// Appends to an existing file and flushes it to the disk, costing time in proportion to
// `piece` alone. A missing file is not created: that is a failure. Earlier contents are
// never touched, so a crash can lose at most the piece being written.
WriteResult appendToFile(const std::string& path, std::string_view piece);

// Appends like appendToFile, but keeps each file open between appends: a scan appends to
// the same seven files for every page. The disk is told to start writing each file out every
// few megabytes, but it is flushed, and its writing waited for, only by closeAll.
class AppendingFiles {
public:
    AppendingFiles() = default;
    AppendingFiles(const AppendingFiles&) = delete;
    AppendingFiles& operator=(const AppendingFiles&) = delete;
    ~AppendingFiles() { (void)closeAll(); }

    WriteResult append(const std::string& path, std::string_view piece);
    // Appends the pieces one after another in one write, gathered in a buffer that is kept.
    WriteResult append(const std::string& path, std::initializer_list<std::string_view> pieces);
    // Flushes every file to the disk and closes it; the first failure is reported, and
    // every file is closed all the same.
    WriteResult closeAll();

private:
    struct OpenFile {
        std::string path;
        int fd = -1;
        // Bytes appended since the disk was last asked to start writing the file out.
        size_t unsent = 0;
    };
    WriteResult write(OpenFile& file, std::string_view piece);

    std::vector<OpenFile> open_;
    std::string gathered_;
};

// Whether the file's last bytes other than blanks and line breaks are `ending`; false for
// a missing or unreadable file. Reads only the end of the file.
bool fileEndsWith(const std::string& path, std::string_view ending);

bool pathExists(const std::string& path);
bool isDirectory(const std::string& path);
// One level only: fails when the parent folder is missing or the folder exists already.
WriteResult createFolder(const std::string& path);
bool createFolderWithParents(const std::string& path);
// A rename: `to` is replaced when it is a file.
WriteResult movePath(const std::string& from, const std::string& to);
// A second name `to` for the file `from`; a copy where the file system has no such links.
WriteResult linkPath(const std::string& from, const std::string& to);
// Removing a file that is not there is no failure.
WriteResult removeFile(const std::string& path);
WriteResult removeRecursively(const std::string& path);

// Every entry below `root` (files and folders), as paths relative to it joined with "/".
// Each folder's entries come in byte order of their names and a folder's contents follow
// it directly. Links to folders are listed but not entered.
std::vector<std::string> walkFolder(const std::string& root);

// The text after the last "." of the last path component, or empty when there is none.
std::string_view pathExtension(std::string_view path);

}  // namespace loomcrest
