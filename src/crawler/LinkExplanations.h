#pragma once

#include <string>
#include <string_view>

#include "crawler/SiteScanner.h"
#include "platform/StreamingFile.h"

namespace loomcrest {

// Why a link was not queued, in a few words: "off-site host", "filter "pdf"", ...
std::string linkReasonText(const LinkDecision& decision);

// Every link a scan did not queue, with its page and the reason, as tab-separated lines
// under a "Page", "Link", "Reason" header. Written as the crawl goes, so it costs no memory
// however big the site; the file appears whole when `finish` succeeds.
class LinkExplanations {
public:
    WriteResult open(const std::string& path);
    // `href` as the page has it.
    void linkNotQueued(std::string_view page, std::string_view href, const LinkDecision& decision);
    WriteResult finish() { return file_.commit(); }

private:
    StreamingFile file_;
};

}  // namespace loomcrest
