// The site file reader: any text read field by field, completed, and given new statistics,
// robots flag and stored statistics, as the site list and a scan do.
#include "FuzzInput.h"
#include "sites/SiteFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace loomcrest;
    const std::string_view text = fuzz::asText(data, size);
    for (const SiteField field :
         {SiteField::SiteName, SiteField::SiteURL, SiteField::IgnoreRobotFile,
          SiteField::PagesFound, SiteField::TotalLinks, SiteField::PagesUsed}) {
        (void)countForDisplay(readSiteField(text, field));
        (void)replaceSiteElement(text, field, "1");
    }
    const std::string completed = completedSiteFileText(text);
    (void)siteFileTextWithStatistics(completed, 1, 2, 3);
    (void)siteFileTextWithRobotsFlag(completed, true);
    (void)siteFileTextWithStoredStatistics(completed, siteStatisticsText(text));
    return 0;
}
