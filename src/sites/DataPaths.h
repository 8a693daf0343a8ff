#pragma once

#include <string>
#include <string_view>

namespace loomcrest {

// The folder of the maker's applications: home, "Library", "Application Support", "Quillmoor".
std::string makerFolderLocation();
// The data root: the maker folder plus "Loomcrest", without a trailing separator.
std::string homeFolderLocation();
// The site folder of `name`: the data root joined with the name, used as typed.
std::string siteFolderLocation(std::string_view name);
// The site file of `name`: <data root>/<name>/<name>.vrLMP. Existence is not checked.
std::string returnFullFileLocation(std::string_view name);
// `path` up to, not including, its last "/"; the whole path when it has none.
std::string parentFolderOf(std::string_view path);

// Creates the maker folder and the data root when they are missing. The folders above
// the maker folder usually do not exist on this platform, so they are created as well.
// Failures are ignored.
void checkNeededFoldersExist();

}  // namespace loomcrest
