#include "app/TextMode.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <optional>

#include <framework/host/TextScreen.h>

#include "app/PhoneKey.h"

using std::chrono::milliseconds;

namespace {

constexpr milliseconds LOOKS_FOR_THE_END_EVERY{100};
// A key whose effect takes longer leaves the next key to the judgement of what is on the screen.
constexpr milliseconds WAITS_FOR_A_KEY_AT_MOST{100};
constexpr std::string_view BLANKS = " \t\r\n";

std::optional<milliseconds> waitingTime(std::string_view word)
{
    constexpr std::string_view WAIT = "wait:";
    if (!word.starts_with(WAIT))
        return std::nullopt;
    const auto time = word.substr(WAIT.size());
    long number = 0;
    const auto [end, error] = std::from_chars(time.data(), time.data() + time.size(), number);
    const std::string_view unit(end, static_cast<std::size_t>(time.data() + time.size() - end));
    if (error != std::errc() || number < 0)
        return std::nullopt;
    if (unit == "ms")
        return milliseconds(number);
    return unit == "s" ? std::optional<milliseconds>(std::chrono::seconds(number)) : std::nullopt;
}

} // namespace

TextMode::TextMode(EventThread& events, FrameStore& frames, KeyGate& keys, std::ostream& out)
    : m_events(events)
    , m_frames(frames)
    , m_keys(keys)
    , m_out(out)
    , m_printer([this] { printNewFrames(); })
{
}

TextMode::~TextMode()
{
    m_stopped = true;
    m_printer.join();
}

void TextMode::run(int in, int stop)
{
    m_events.waitUntilDone(std::chrono::seconds(5)); // the telephone starts
    printLatest();
    std::string unread;
    std::array<char, 4096> buffer;
    std::array<pollfd, 2> waits{{{in, POLLIN, 0}, {stop, POLLIN, 0}}};
    for (;;) {
        if (poll(waits.data(), waits.size(), -1) < 0 || waits[1].revents != 0)
            break;
        const auto size = read(in, buffer.data(), buffer.size());
        unread.append(buffer.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
        if (size <= 0)
            unread += '\n'; // the last word may end with the input
        for (auto end = unread.find_first_of(BLANKS); end != unread.npos;
             end = unread.find_first_of(BLANKS)) {
            if (end > 0)
                word(std::string_view(unread).substr(0, end));
            unread.erase(0, end + 1);
        }
        if (size <= 0)
            break;
    }
}

void TextMode::word(std::string_view word)
{
    if (const auto time = waitingTime(word)) {
        wait(*time);
        return;
    }
    const auto keys = keysFromWord(word);
    if (!keys) {
        say("There is no key \"" + std::string(word) + "\".");
        return;
    }
    for (const auto& key : *keys) {
        if (m_keys.press(key) == KeyGate::Verdict::Busy)
            say("(busy)");
        m_events.waitUntilDone(WAITS_FOR_A_KEY_AT_MOST);
    }
    printLatest();
}

void TextMode::wait(milliseconds time)
{
    const auto until = std::chrono::steady_clock::now() + time;
    for (auto frame = m_frames.latest(); frame;) {
        const auto left = std::chrono::ceil<milliseconds>(until - std::chrono::steady_clock::now());
        frame = m_frames.waitForFrameAfter(frame->number, std::max(left, milliseconds(0)));
        if (frame)
            print(frame);
    }
    m_events.waitUntilDone(WAITS_FOR_A_KEY_AT_MOST);
    printLatest();
}

void TextMode::printNewFrames()
{
    for (std::uint64_t number = 0; !m_stopped;) {
        const auto frame = m_frames.waitForFrameAfter(number, LOOKS_FOR_THE_END_EVERY);
        if (!frame)
            continue;
        number = frame->number;
        print(frame);
    }
}

void TextMode::printLatest()
{
    print(m_frames.latest());
}

void TextMode::print(const FrameStore::FramePtr& frame)
{
    std::lock_guard lock(m_mutex);
    if (frame->number <= m_printed)
        return;
    m_printed = frame->number;
    auto text = toText(*frame);
    if (text == m_text)
        return;
    m_text = std::move(text);
    m_out << m_text << "----------------------------------------" << std::endl;
}

void TextMode::say(std::string_view text)
{
    std::lock_guard lock(m_mutex);
    m_out << text << std::endl;
}
