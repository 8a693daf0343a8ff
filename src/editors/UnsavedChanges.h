#pragma once

#include "platform/Alerts.h"

namespace loomcrest {

// When the HTML sitemap view asks what to do with edits that were not saved yet.
enum class UnsavedChangesMoment {
    LayoutSwitch,  // another layout is chosen in the pop-up
    Closing,       // the view is left through its own save request or the browser preview
    OtherView,     // another view takes the window
    LinkDeletion,  // a link is about to be deleted
};

// The question for that moment. The default button saves; the last one discards.
Alert unsavedChangesQuestion(UnsavedChangesMoment moment);

}  // namespace loomcrest
