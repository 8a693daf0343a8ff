#pragma once

#include <string>

namespace loomcrest {

// The add/edit sheet: its titles and the text of its two input fields.
struct SiteSheetState {
    bool shown = false;
    std::string title;
    std::string defaultButtonTitle;
    std::string alternateButtonTitle;
    std::string siteName;
    std::string siteURL;
};

class SiteSheetView {
public:
    virtual ~SiteSheetView() = default;
    virtual void siteSheetChanged(const SiteSheetState& state) = 0;
    // Makes the name field the first responder, so that the next opening starts there.
    virtual void focusNameField() = 0;
};

}  // namespace loomcrest
