// A command that stands in a menu, on a popup or in a selection field. Its type is SCREEN.
//
// Who made it owns it. Widgets only point at it; destroying it takes it out of all of them.

#pragma once

#include <string>

#include <framework/display/Command.h>

namespace DisplayAPI {

class FRAMEWORK_API MenuCommand : public Command {
public:
    explicit MenuCommand(TranslationInfo label);
    // `icon` is a DisplayIcon (see Icons.h).
    MenuCommand(TranslationInfo label, int icon);
    ~MenuCommand() override;

    int getIcon() const { return m_icon; }

    // A picture shown beside the label: the path of an image file, or "" for none.
    const std::string& getImagePath() const { return m_imagePath; }
    void setImagePath(std::string path);

private:
    int m_icon = 0;
    std::string m_imagePath;
};

} // namespace DisplayAPI
