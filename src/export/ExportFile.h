#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/Alerts.h"

namespace loomcrest {

// Why an export file was not written: the path asked for and the system's reason.
struct ExportWriteFailure {
    std::string path;
    std::string reason;
};

// Writes an exported file atomically (a temporary file beside it, then a rename). A symbolic
// link is written through: the file it points to gets the new contents and the link stays,
// as a person who links a published file into place expects.
std::optional<ExportWriteFailure> writeExportFile(const std::string& path, std::string_view bytes);

struct ExportFileContents {
    std::string path;
    std::string_view bytes;
};

// Writes several exported files as one set, each as writeExportFile does: only when every
// one has been written in full does any of them replace the file of its name, so a failure
// (a full disk halfway through) leaves the set that was there before.
std::optional<ExportWriteFailure> writeExportFiles(std::span<const ExportFileContents> files);

// The refusal that tells the user.
Alert exportWriteRefusal(const ExportWriteFailure& failure);

}  // namespace loomcrest
