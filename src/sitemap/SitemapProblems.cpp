#include "sitemap/SitemapProblems.h"

#include <algorithm>

namespace loomcrest {

namespace {

std::string counted(size_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace

std::string formatProblem(const SitemapProblem& problem) {
    std::string line = "Line " + std::to_string(problem.line) + ": ";
    if (problem.severity == SitemapProblem::Severity::Warning) {
        line += "Warning: ";
    }
    return line + problem.text;
}

std::string problemSummary(const std::vector<SitemapProblem>& problems) {
    const auto warnings = static_cast<size_t>(
        std::count_if(problems.begin(), problems.end(), [](const SitemapProblem& problem) {
            return problem.severity == SitemapProblem::Severity::Warning;
        }));
    const size_t errors = problems.size() - warnings;
    std::string summary = errors == 0 ? "No problems" : counted(errors, "problem");
    if (warnings > 0) {
        summary += ", " + counted(warnings, "warning");
    }
    return summary;
}

bool hasErrors(const std::vector<SitemapProblem>& problems) {
    return std::any_of(problems.begin(), problems.end(), [](const SitemapProblem& problem) {
        return problem.severity == SitemapProblem::Severity::Error;
    });
}

}  // namespace loomcrest
