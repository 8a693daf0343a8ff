#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace loomcrest {

// One thing a search engine would object to in a sitemap, at a line counted from 1.
// A warning is something the export repairs on its way out.
struct SitemapProblem {
    enum class Severity { Error, Warning };
    size_t line = 0;
    Severity severity = Severity::Error;
    std::string text;
};

// "Line 12: TEXT", or "Line 12: Warning: TEXT".
std::string formatProblem(const SitemapProblem& problem);
// "No problems", "1 problem", "3 problems, 1 warning", "No problems, 2 warnings".
std::string problemSummary(const std::vector<SitemapProblem>& problems);
bool hasErrors(const std::vector<SitemapProblem>& problems);

}  // namespace loomcrest
