// A menu over the current screen. A choice arrives as the chosen command; neither a choice nor
// Back closes the menu: who opened it dismisses it.
// [phonelet-thread]

#pragma once

#include <string>

#include <framework/display/CommandRow.h>
#include <framework/display/Displayable.h>

namespace DisplayAPI {

class FRAMEWORK_API ContextMenu final : public Displayable {
public:
    // `kind` is 1; it makes no difference.
    explicit ContextMenu(int kind);
    ~ContextMenu() override;

    // Appends a choice; a command may be in several menus. Not owned.
    void addCommand(MenuCommand* command);
    // Takes the head away too: the title and the picture are about what the choices are for.
    void clearCommands();
    // A picture beside the title: the path of an image file, or "" for none.
    void setImage(std::string path);
    // Takes it off the display and shows what is below. Nothing when it is not shown.
    void dismiss();

    FrameRole role() const override;
    bool isPopup() const override { return true; }
    void paint(FrameScreen& screen, int rows) const override;
    bool keyPressed(const Key& key) override;
    void opened() override;

private:
    CommandRow m_commands;
    std::string m_image;
};

} // namespace DisplayAPI
