#include "export/SitePicker.h"

#include "sites/SiteList.h"

namespace loomcrest {

SitePickerItems populateSitePicker(std::string_view shownSiteName) {
    SitePickerItems picker;
    picker.items = siteNamesWithExtension("xml");
    for (size_t i = 0; i < picker.items.size(); ++i) {
        if (picker.items[i] == shownSiteName) {
            picker.selected = i;
            break;
        }
    }
    if (picker.items.empty()) {
        picker.items.emplace_back(kNoSitesScanned);
    }
    return picker;
}

}  // namespace loomcrest
