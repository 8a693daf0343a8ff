#include "crawler/LinkExplanations.h"

#include "platform/Delimited.h"

namespace loomcrest {

std::string linkReasonText(const LinkDecision& decision) {
    switch (decision.reason) {
        case LinkReason::Queued:
            return "queued";
        case LinkReason::Empty:
            return "empty";
        case LinkReason::NotAUrl:
            return "not a URL";
        case LinkReason::Extension:
            return "extension";
        case LinkReason::FolderOfIndexPage:
            return "folder of a queued index page";
        case LinkReason::Filter:
            return "filter \"" + std::string(decision.rule) + "\"";
        case LinkReason::RobotsRule:
            return "robots rule \"" + std::string(decision.rule) + "\"";
        case LinkReason::NoHostOrPath:
            return "no host";
        case LinkReason::OtherScheme:
            return "other scheme";
        case LinkReason::OffSiteHost:
            return "off-site host";
        case LinkReason::TooManyQueryMarks:
            return "too many \"?\"";
        case LinkReason::QueryWithoutPage:
            return "\"?\" without a page name";
        case LinkReason::Duplicate:
            return "duplicate";
        case LinkReason::IndexPageOfFolder:
            return "index page of a queued folder";
        case LinkReason::WwwTwin:
            return "www twin";
    }
    return {};
}

WriteResult LinkExplanations::open(const std::string& path) {
    WriteResult opened = file_.open(path);
    file_.write("Page\tLink\tReason\n");
    return opened;
}

void LinkExplanations::linkNotQueued(std::string_view page, std::string_view href,
                                     const LinkDecision& decision) {
    std::string line = tsvField(page);
    line.append("\t").append(tsvField(href)).append("\t");
    line.append(tsvField(linkReasonText(decision))).append("\n");
    file_.write(line);
}

}  // namespace loomcrest
