// The dialler: the number that is about to be dialled, and the digits the user types.
//
// Every digit typed or deleted is one item event with the dialler as the item. In edit mode typing
// goes on in the text that was set; otherwise the first digit starts a new text. Neither Back nor a
// command closes it.
// [phonelet-thread]

#pragma once

#include <string>

#include <framework/display/CommandRow.h>
#include <framework/display/Displayable.h>
#include <framework/display/Item.h>

namespace DisplayAPI {

class ItemStateListener;

class FRAMEWORK_API PopupDialer final : public Displayable, public Item {
public:
    // 1 and 3; they make no difference.
    PopupDialer(int kind, int lines);
    ~PopupDialer() override;

    void addCommand(MenuCommand* command);
    void clearCommands();
    // Whether the telephone's own line text stands in the header.
    void showStimulusText(bool show);
    void setLine1Prefix(const std::string& prefix);
    void setLine1(TranslationInfo text);
    void setLine2(const std::string& text);

    // The digits in the line edit; "" when nothing was typed since it was shown.
    std::string getLineEditText() const;
    // Puts `text` into the line edit, silently. Making the dialler current empties it: set it after.
    void setText(const std::string& text);
    void setEditMode(bool edit);
    // Long texts are cut instead of scrolled.
    void setNoScroll();
    void dismiss();

    void setItemStateListener(ItemStateListener* listener);

    FrameRole role() const override;
    bool isPopup() const override { return true; }
    void paint(FrameScreen& screen, int rows) const override;
    bool keyPressed(const Key& key) override;
    // Nothing was typed yet, and edit mode is off.
    void opened() override;

private:
    // Whether `key` changed the line edit.
    bool edit(const Key& key);
    void type(const std::string& digit);

    CommandRow m_commands;
    bool m_stimulusText = false;
    std::string m_prefix;
    TranslationInfo m_line1;
    std::string m_line2;
    std::string m_edit;
    bool m_editMode = false;
    bool m_startsNewText = false;
    bool m_scrolls = true;
    ItemStateListener* m_pItemStateListener = nullptr;
};

} // namespace DisplayAPI
