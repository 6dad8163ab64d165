// A question over the current screen, answered by one of its commands.
//
// The popup points at its commands and never owns them; a command that dies leaves it by itself.
// It stays until it is dismissed: neither Back nor an answer closes it.
// [phonelet-thread]

#pragma once

#include <framework/display/CommandRow.h>
#include <framework/display/Displayable.h>

namespace DisplayAPI {

class FRAMEWORK_API PopupConfirm final : public Displayable {
public:
    // `kind` is 1; it makes no difference.
    explicit PopupConfirm(int kind);
    ~PopupConfirm() override;

    void setText(TranslationInfo text);
    // 1: a warning before something is lost; 0: a plain question.
    void setState(int state);
    // Appends an answer. A command may be on several popups.
    void addCommand(MenuCommand* command);
    void clearCommands();
    // Takes it off the display and shows what is below. Nothing when it is not shown.
    void dismiss();

    FrameRole role() const override;
    bool isPopup() const override { return true; }
    void paint(FrameScreen& screen, int rows) const override;
    bool keyPressed(const Key& key) override;
    void opened() override;

private:
    TranslationInfo m_text;
    int m_state = 0;
    CommandRow m_commands;
};

} // namespace DisplayAPI
