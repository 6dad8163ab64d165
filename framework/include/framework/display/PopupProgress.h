// Says that something is under way. Keys pressed meanwhile are dropped, and the screen shows that.
// It stays until it is dismissed.
// [phonelet-thread]

#pragma once

#include <framework/display/Displayable.h>

namespace DisplayAPI {

class FRAMEWORK_API PopupProgress final : public Displayable {
public:
    // `kind` is 0 or 1; it makes no difference.
    explicit PopupProgress(int kind);
    ~PopupProgress() override;

    void setText(TranslationInfo text);
    // Passed on to whoever draws the screen, as FrameScreen::type.
    void setType(int type);
    void dismiss();

    FrameRole role() const override;
    bool isPopup() const override { return true; }
    void paint(FrameScreen& screen, int rows) const override;
    bool keyPressed(const Key& key) override;

private:
    TranslationInfo m_text;
    int m_type = 0;
};

} // namespace DisplayAPI
