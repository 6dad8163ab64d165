// The telephone in a terminal or a pipe: prints what is to be seen as text, reads keys as words.
//
// Every frame that shows something new is printed, followed by a line of dashes. Words are those of
// keysFromWord(), and "wait:3000ms" or "wait:3s". A word is acted on when the one before it has had
// its whole effect, or after a moment when that takes longer.

#pragma once

#include <atomic>
#include <mutex>
#include <ostream>
#include <string>
#include <string_view>
#include <thread>

#include "app/EventThread.h"
#include "app/FrameStore.h"
#include "app/KeyGate.h"

class TextMode {
public:
    TextMode(EventThread& events, FrameStore& frames, KeyGate& keys, std::ostream& out);
    ~TextMode();

    TextMode(const TextMode&) = delete;
    TextMode& operator=(const TextMode&) = delete;

    // Until the input ends or `stop` can be read. Both are file descriptors.
    void run(int in, int stop);

    void word(std::string_view word);

private:
    void printNewFrames();
    void printLatest();
    void print(const FrameStore::FramePtr& frame);
    void say(std::string_view text);
    void wait(std::chrono::milliseconds time);

    EventThread& m_events;
    FrameStore& m_frames;
    KeyGate& m_keys;
    std::ostream& m_out;
    std::mutex m_mutex; // the output, and what was printed on it last
    std::uint64_t m_printed = 0;
    std::string m_text;
    std::atomic<bool> m_stopped{false};
    std::thread m_printer;
};
