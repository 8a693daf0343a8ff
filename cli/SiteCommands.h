#pragma once

#include <optional>
#include <ostream>
#include <string>

namespace loomcrest::cli {

inline constexpr int kExitSuccess = 0;
// The action was refused by an alert, or named no site.
inline constexpr int kExitRefused = 1;
inline constexpr int kExitUsage = 2;

struct EditRequest {
    std::string name;
    std::optional<std::string> newName;
    std::optional<std::string> newURL;
};

int listSites(std::ostream& out, std::ostream& err);
int addSite(const std::string& name, const std::string& url, std::ostream& err);
int editSite(const EditRequest& request, std::ostream& err);
int deleteSite(const std::string& name, std::ostream& err);
int showSite(const std::string& name, std::ostream& out, std::ostream& err);
int setIgnoreRobots(const std::string& name, bool ignore, std::ostream& err);

}  // namespace loomcrest::cli
