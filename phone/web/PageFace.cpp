#include "web/PageFace.h"

#include "app/FrameStore.h"
#include "app/KeyGate.h"
#include "app/PhoneKey.h"
#include "system/Translator.h"

namespace {

// A watcher notices the end, and a change of language, after this time at the latest.
constexpr std::chrono::milliseconds nLONGEST_WAIT{200};

KeyVerdict verdictOf(KeyGate::Verdict verdict)
{
    switch (verdict) {
    case KeyGate::Verdict::Passed:
        return KeyVerdict::Taken;
    case KeyGate::Verdict::Busy:
        return KeyVerdict::Busy;
    case KeyGate::Verdict::Consumed:
        return KeyVerdict::Closed;
    }
    return KeyVerdict::Unknown;
}

} // namespace

PageFace::PageFace(FrameStore& frames, KeyGate& keys, const Translator& translator,
                   std::filesystem::path clips)
    : m_frames(frames)
    , m_keys(keys)
    , m_translator(translator)
    , m_gallery(std::move(clips))
    , m_watcher([this, spoken = language()] { watch(spoken); })
{
}

PageFace::~PageFace()
{
    m_stopped = true;
    m_watcher.join();
}

std::shared_ptr<const DisplayAPI::Frame> PageFace::frame() const
{
    return m_frames.latest();
}

void PageFace::setFaceListener(std::function<void()> listener)
{
    const std::lock_guard lock(m_mutex);
    m_listener = std::move(listener);
}

KeyVerdict PageFace::press(std::string_view key)
{
    const auto keys = keysFromWord(key);
    if (!keys)
        return KeyVerdict::Unknown;
    auto verdict = KeyVerdict::Unknown;
    for (const auto& pressed : *keys)
        verdict = verdictOf(m_keys.press(pressed));
    return verdict;
}

std::string PageFace::language() const
{
    return m_translator.spokenLanguage();
}

std::string PageFace::text(const std::string& key) const
{
    return m_translator.translate(key);
}

void PageFace::watch(std::string spoken)
{
    std::uint64_t seen = 0;
    while (!m_stopped) {
        const auto frame = m_frames.waitForFrameAfter(seen, nLONGEST_WAIT);
        const std::string now = language();
        if (!frame && now == spoken)
            continue;
        if (frame)
            seen = frame->number;
        spoken = now;
        const std::lock_guard lock(m_mutex);
        if (m_listener)
            m_listener();
    }
}
