#pragma once

#include <map>
#include <string>

namespace loomcrest::cli {

struct DemoResource {
    std::string contentType;
    std::string body;
};

// A small shop's site of 31 pages in folders, with a robots.txt that keeps /private/ out, a
// broken link, a PDF, an image link with an alt text, an off-site link and pages with a
// query. Keyed by request target.
std::map<std::string, DemoResource> demoSite();

}  // namespace loomcrest::cli
