// A picture that a contact can have: the image, and the command that shows it in the form's choice.

#pragma once

#include <memory>

#include <framework/display/Image.h>
#include <framework/display/MenuCommand.h>

class PhonebookImage {
public:
    // Null before they were set. The command's image path names the picture; "" is no picture.
    DisplayAPI::Image* getDisplayImage() const;
    void setDisplayImage(std::unique_ptr<DisplayAPI::Image> pImage);
    DisplayAPI::MenuCommand* getSfCommand() const;
    void setSfCommand(std::unique_ptr<DisplayAPI::MenuCommand> pCommand);

private:
    std::unique_ptr<DisplayAPI::Image> m_pDisplayImage;
    std::unique_ptr<DisplayAPI::MenuCommand> m_pSfCommand;
};
