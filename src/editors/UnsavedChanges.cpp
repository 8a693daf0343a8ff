#include "editors/UnsavedChanges.h"

#include <string>

namespace loomcrest {

namespace {

// Every variant reads "Changes have been made to WHAT, would you like to save WHEN?".
Alert changesQuestion(std::string_view what, std::string_view when, std::string discard) {
    return Alert::question("Changes have been made to " + std::string(what) +
                               ", would you like to save " + std::string(when) + "?",
                           "", "Save Changes", "", std::move(discard));
}

}  // namespace

Alert unsavedChangesQuestion(UnsavedChangesMoment moment) {
    switch (moment) {
        case UnsavedChangesMoment::LayoutSwitch:
            return changesQuestion("the look of this sitemap", "these changes", "Discard");
        case UnsavedChangesMoment::Closing:
            return changesQuestion("this sitemap", "the changes you have made", "Discard Changes");
        case UnsavedChangesMoment::OtherView:
            return changesQuestion("this sitemap", "before proceeding", "Discard");
        case UnsavedChangesMoment::LinkDeletion: {
            Alert alert = changesQuestion("this sitemap",
                                          "the changes you have made before deleting this link",
                                          "Discard Changes");
            alert.message =
                "Once you have deleted a link it cannot be restored without re-scanning the site.";
            alert.alternateButton = "Cancel Deletion";
            return alert;
        }
    }
    return changesQuestion("this sitemap", "the changes you have made", "Discard Changes");
}

}  // namespace loomcrest
