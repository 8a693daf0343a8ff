#include "sites/DataPaths.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/FileSystem.h"

namespace loomcrest {

namespace {

std::string homeFolder() {
    if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') {
        return home;
    }
    if (const passwd* entry = getpwuid(getuid()); entry != nullptr && entry->pw_dir != nullptr) {
        return entry->pw_dir;
    }
    return {};
}

}  // namespace

std::string makerFolderLocation() {
    return homeFolder() + "/Library/Application Support/Quillmoor";
}

std::string homeFolderLocation() {
    return makerFolderLocation() + "/Loomcrest";
}

std::string siteFolderLocation(std::string_view name) {
    return homeFolderLocation() + "/" + std::string(name);
}

std::string returnFullFileLocation(std::string_view name) {
    return siteFolderLocation(name) + "/" + std::string(name) + ".vrLMP";
}

std::string parentFolderOf(std::string_view path) {
    const size_t slash = path.rfind('/');
    return std::string(slash == std::string_view::npos ? path : path.substr(0, slash));
}

void checkNeededFoldersExist() {
    const std::string makerFolder = makerFolderLocation();
    if (!pathExists(makerFolder)) {
        createFolderWithParents(makerFolder);
    }
    const std::string dataRoot = homeFolderLocation();
    if (!pathExists(dataRoot)) {
        (void)createFolder(dataRoot);
    }
}

}  // namespace loomcrest
