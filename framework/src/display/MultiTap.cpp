#include "MultiTap.h"

#include <algorithm>

#include <framework/util/Utf8Utils.h>

#include "KeyHost.h"

namespace DisplayAPI {

namespace {

constexpr std::chrono::milliseconds COMMIT_TIME{1000};

// What no digit key gives: `@` for an address, and what names of companies are written with.
std::vector<std::string> signs()
{
    return {"*", "@", "_", "/", "+", "(", ")", ":", "#"};
}

} // namespace

std::string MultiTap::letter() const
{
    return isPending() ? m_letters[m_choice] : std::string{};
}

bool MultiTap::changesWith(char digit) const
{
    return m_digit == digit && !isOver(KeyHost::now());
}

void MultiTap::press(char digit, Case letterCase)
{
    if (m_digit == digit) {
        m_choice = (m_choice + 1) % m_letters.size();
    } else {
        m_digit = digit;
        m_choice = 0;
        m_letters = digit == '*' ? signs() : KeyHost::charactersOnKey(digit);
        if (letterCase == Case::Capital)
            std::ranges::transform(m_letters, m_letters.begin(), Utf8Utils::capital);
    }
    m_deadline = KeyHost::now() + COMMIT_TIME;
    KeyHost::wakeAt(m_deadline);
}

std::string MultiTap::take()
{
    auto taken = letter();
    m_digit = 0;
    return taken;
}

} // namespace DisplayAPI
