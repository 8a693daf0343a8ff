#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace loomcrest {

// The whole file as UTF-8 text; nothing when it is missing, unreadable or not valid UTF-8.
std::optional<std::string> readTextFile(const std::string& path);
// The file's text up to, not including, the first `marker`, read no further than needed; the
// whole text when the marker is missing. Nothing when the file is missing or unreadable, or
// what was read is not valid UTF-8.
std::optional<std::string> readTextFileUpTo(const std::string& path, std::string_view marker);

// Writes into a temporary file beside `path`, then renames it over `path`, so a reader
// sees either the old or the new contents and a failed write leaves the old file alone.
bool writeFileAtomically(const std::string& path, std::string_view contents);

// Appends to an existing file in one write, costing time in proportion to `piece` alone.
// A missing file is not created and the piece is then lost. Earlier contents are never
// touched, so a crash can lose at most the piece being written.
bool appendToFile(const std::string& path, std::string_view piece);

// Appends like appendToFile, but keeps each file open between appends: a scan appends to
// the same seven files for every page.
class AppendingFiles {
public:
    AppendingFiles() = default;
    AppendingFiles(const AppendingFiles&) = delete;
    AppendingFiles& operator=(const AppendingFiles&) = delete;
    ~AppendingFiles() { closeAll(); }

    bool append(const std::string& path, std::string_view piece);
    void closeAll();

private:
    std::vector<std::pair<std::string, int>> open_;
};

bool pathExists(const std::string& path);
bool isDirectory(const std::string& path);
// One level only: fails when the parent folder is missing.
bool createFolder(const std::string& path);
bool createFolderWithParents(const std::string& path);
bool movePath(const std::string& from, const std::string& to);
bool removeFile(const std::string& path);
bool removeRecursively(const std::string& path);

// Every entry below `root` (files and folders), as paths relative to it joined with "/".
// Each folder's entries come in byte order of their names and a folder's contents follow
// it directly. Links to folders are listed but not entered.
std::vector<std::string> walkFolder(const std::string& root);

// The text after the last "." of the last path component, or empty when there is none.
std::string_view pathExtension(std::string_view path);

}  // namespace loomcrest
