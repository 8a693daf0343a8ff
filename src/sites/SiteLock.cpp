#include "sites/SiteLock.h"

#include "sites/DataPaths.h"

namespace loomcrest {

std::string scanRunningMessage(std::string_view siteName) {
    return "A scan of " + std::string(siteName) + " is already running.";
}

namespace {

std::optional<FolderLock> lockFolder(const std::string& folder, std::string_view siteName,
                                     std::string_view failureTitle, AlertPresenter& alerts,
                                     AlertParent parent) {
    FolderLock lock = FolderLock::tryLock(folder);
    switch (lock.outcome()) {
        case FolderLock::Outcome::Held:
            return lock;
        case FolderLock::Outcome::Busy:
            alerts.presentAlert(Alert::refusal(scanRunningMessage(siteName), {}, parent),
                                [](int) {});
            return std::nullopt;
        case FolderLock::Outcome::Failed:
        case FolderLock::Outcome::Released:
            break;
    }
    alertWriteFailure(alerts, failureTitle, lock.failure(), parent);
    return std::nullopt;
}

}  // namespace

std::optional<FolderLock> lockSiteForChange(std::string_view siteName,
                                            std::string_view failureTitle, AlertPresenter& alerts,
                                            AlertParent parent) {
    return lockFolder(siteFolderLocation(siteName), siteName, failureTitle, alerts, parent);
}

std::optional<FolderLock> lockSiteOfFile(const std::string& path, std::string_view failureTitle,
                                         AlertPresenter& alerts) {
    // A site's folder is named after the site.
    const std::string folder = parentFolderOf(path);
    const std::string siteName = folder.substr(folder.rfind('/') + 1);
    return lockFolder(folder, siteName, failureTitle, alerts, AlertParent::MainWindow);
}

void alertWriteFailure(AlertPresenter& alerts, std::string_view title, const WriteResult& failure,
                       AlertParent parent) {
    alerts.presentAlert(Alert::refusal(std::string(title), failure.message(), parent), [](int) {});
}

}  // namespace loomcrest
