#include "MultiTap.h"

#include "KeyHost.h"

namespace DisplayAPI {

namespace {

constexpr std::chrono::milliseconds COMMIT_TIME{1000};

} // namespace

std::string MultiTap::letter() const
{
    return isPending() ? m_letters[m_choice] : std::string{};
}

bool MultiTap::changesWith(char digit) const
{
    return m_digit == digit && !isOver(KeyHost::now());
}

void MultiTap::press(char digit)
{
    if (m_digit == digit) {
        m_choice = (m_choice + 1) % m_letters.size();
    } else {
        m_digit = digit;
        m_choice = 0;
        m_letters = KeyHost::charactersOnKey(digit);
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
