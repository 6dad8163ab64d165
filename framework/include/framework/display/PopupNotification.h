// A message that goes by itself: after its time-out, by a key (which it consumes), or because a
// base screen was made current.
//
// Each of these raises exactly one SCREEN command labelled WIDGET_IS_HIDDEN_EVENT with it as the
// displayable, delivered before the key that follows. Its own dismiss() and its destruction raise
// none. Making it current again restarts the time-out.
// [phonelet-thread]

#pragma once

#include <chrono>

#include <framework/display/Displayable.h>

namespace DisplayAPI {

class FRAMEWORK_API PopupNotification final : public Displayable {
public:
    // What it tells: its colour and sound.
    enum Type : int { SUCCESS = 1, ERROR = 2, STIMULUS_ERROR = 3, NOTICE = 6, LINE_SELECTION = 7 };

    PopupNotification();
    ~PopupNotification() override;

    void setText(TranslationInfo text);
    // A Type.
    void setType(int type);
    // In milliseconds; 0 (the default): it goes by a key only.
    void setTimeout(unsigned ms);
    void dismiss();

    std::chrono::milliseconds timeout() const;
    FrameRole role() const override;
    bool isPopup() const override { return true; }
    void paint(FrameScreen& screen, int rows) const override;
    bool keyPressed(const Key& key) override;
    // For the display: it went by itself. Reports it.
    void ended();

private:
    TranslationInfo m_text;
    int m_type = 0;
    std::chrono::milliseconds m_timeout{0};
};

} // namespace DisplayAPI
