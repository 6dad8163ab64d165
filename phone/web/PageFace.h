// The telephone as its page sees it, over the telephone's own parts: the frames that it publishes,
// the gate for its keys, its texts.

#pragma once

#include <atomic>
#include <filesystem>
#include <mutex>
#include <thread>

#include "web/PhoneFaceIfc.h"
#include "web/PictureGallery.h"

class FrameStore;
class KeyGate;
class Translator;

class PageFace final : public PhoneFaceIfc {
public:
    // None of them is owned; all outlive it. `clips` is the folder of the pictures.
    PageFace(FrameStore& frames, KeyGate& keys, const Translator& translator, std::filesystem::path clips);
    ~PageFace() override;

    std::shared_ptr<const DisplayAPI::Frame> frame() const override;
    void setFaceListener(std::function<void()> listener) override;
    KeyVerdict press(std::string_view key) override;
    std::string language() const override;
    std::string text(const std::string& key) const override;
    std::string pictureId(const std::string& path) override { return m_gallery.idOf(path); }
    std::shared_ptr<const std::string> picture(const std::string& id) override
    {
        return m_gallery.thumbnail(id);
    }

private:
    // Tells of new frames and of texts in another language than `spoken`.
    void watch(std::string spoken);

    FrameStore& m_frames;
    KeyGate& m_keys;
    const Translator& m_translator;
    PictureGallery m_gallery;
    std::mutex m_mutex; // held while the listener is called: it is gone when it was taken away
    std::function<void()> m_listener;
    std::atomic<bool> m_stopped{false};
    std::thread m_watcher;
};
