// The pictures to choose from on a contact's form: none, the clips, and the contact's own when it is none
// of the clips.

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <framework/display/TranslationInfo.h>

#include "PhonebookImage.h"

namespace DisplayAPI {
class Displayable;
class SelectionField;
} // namespace DisplayAPI
class EventContext;

class PictureChoices {
public:
    // Reads the clips anew. Returns the message that said so meanwhile, null when there was none.
    std::unique_ptr<DisplayAPI::Displayable> populateImages(EventContext* pContext);
    // Puts the choices into the field and selects the picture that a record keeps under this name. Once
    // after each populateImages().
    void offer(EventContext* pContext, DisplayAPI::SelectionField& field, const std::string& picture);
    // The name of the selected picture, "" for none. Throws std::out_of_range when the field's
    // selection is none of the choices.
    std::string selected(EventContext* pContext, const DisplayAPI::SelectionField& field) const;

private:
    void addImage(const std::string& path, DisplayAPI::TranslationInfo label);

    std::vector<PhonebookImage> m_images;
    // The picture that is none of the clips, the last choice then: it stays the record's as it is.
    std::optional<std::string> m_ownPicture;
};
