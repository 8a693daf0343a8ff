#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Alerts.h"
#include "platform/FileSystem.h"
#include "platform/FolderLock.h"

namespace loomcrest {

// "A scan of NAME is already running.": the refusal of a change to a site whose folder a
// scan, or another change, holds.
std::string scanRunningMessage(std::string_view siteName);

// Locks the folder of `siteName` for a scan or a change. When another holds it, refuses with
// scanRunningMessage; when the lock file cannot be made, refuses with `failureTitle` and the
// reason. Returns the lock, or nothing after such a refusal.
std::optional<FolderLock> lockSiteForChange(std::string_view siteName,
                                            std::string_view failureTitle, AlertPresenter& alerts,
                                            AlertParent parent = AlertParent::MainWindow);

// The same for the site whose folder holds `path`, a file of it.
std::optional<FolderLock> lockSiteOfFile(const std::string& path, std::string_view failureTitle,
                                         AlertPresenter& alerts);

// Refuses with `title` and the failed file's "PATH: reason".
void alertWriteFailure(AlertPresenter& alerts, std::string_view title, const WriteResult& failure,
                       AlertParent parent = AlertParent::MainWindow);

}  // namespace loomcrest
