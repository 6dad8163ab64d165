// A screen or a popup: what Display::setCurrent() takes.
//
// Destroying one takes it off the display and out of every tab. Its listener is not owned and
// must outlive it, or be set to null before.

#pragma once

#include <framework/display/Tracked.h>
#include <framework/display/TranslationInfo.h>

namespace DisplayAPI {

class CommandListener;
class Display;
struct FrameScreen;
struct Key;

class FRAMEWORK_API Displayable : public virtual Tracked {
public:
    Displayable();
    virtual ~Displayable();

    // [phonelet-thread]
    void setCommandListener(CommandListener* listener);
    CommandListener* getCommandListener() const { return m_pCommandListener; }

    // [phonelet-thread]
    void setTitle(TranslationInfo title);

    // For the display: whether it stands above the base screen.
    virtual bool isPopup() const { return false; }

    // For the display: writes what is visible of it, at most `rows` rows, into `screen`.
    virtual void paint(FrameScreen& screen, int rows) const = 0;

    // For the display: reacts to a key, and posts the events that follow from it. Returns false
    // when the key means nothing to it.
    virtual bool keyPressed(const Key& key) = 0;

protected:
    const TranslationInfo& title() const { return m_title; }

private:
    CommandListener* m_pCommandListener = nullptr;
    TranslationInfo m_title;
};

} // namespace DisplayAPI
