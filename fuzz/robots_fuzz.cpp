// Robots rules: a robots.txt of any bytes, then its rules applied to a few addresses.
#include "FuzzInput.h"
#include "crawler/RobotsRules.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace loomcrest;
    const std::vector<std::string> rules = parseRobotsText(fuzz::asText(data, size));
    for (const char* url : {"http://example.com/", "http://example.com/private/a.html", ""}) {
        (void)anyEntryOccursIn(url, rules);
    }
    return 0;
}
