#include <framework/display/PopupProgress.h>

#include <utility>

#include <framework/display/Frame.h>

#include "Registry.h"
#include "UiLock.h"

namespace DisplayAPI {

PopupProgress::PopupProgress(int /*kind*/) {}

PopupProgress::~PopupProgress()
{
    detach();
}

void PopupProgress::setText(TranslationInfo text)
{
    const UiLock lock;
    m_text = std::move(text);
}

void PopupProgress::setType(int type)
{
    const UiLock lock;
    m_type = type;
}

void PopupProgress::dismiss()
{
    const UiLock lock;
    dismissFromDisplays(*this);
}

FrameRole PopupProgress::role() const
{
    return FrameRole::Progress;
}

void PopupProgress::paint(FrameScreen& screen, int /*rows*/) const
{
    const UiLock lock;
    screen.type = m_type;
    screen.title = title().translated();
    screen.text = m_text.translated();
}

bool PopupProgress::keyPressed(const Key& /*key*/)
{
    return true;
}

} // namespace DisplayAPI
