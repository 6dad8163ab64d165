// Letters entered by pressing a digit key repeatedly, signs by pressing `*`: the next press of the
// same key within a second changes the letter, anything else commits it.

#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace DisplayAPI {

class MultiTap {
public:
    bool isPending() const { return m_digit != 0; }
    // The letter as it stands; "" when none is pending.
    std::string letter() const;
    // Whether pressing `digit` now changes the pending letter instead of committing it.
    bool changesWith(char digit) const;
    bool isOver(std::chrono::milliseconds now) const { return isPending() && now >= m_deadline; }

    enum class Case { Small, Capital };
    // Begins a letter with `digit`, or changes the pending one, which keeps its case.
    void press(char digit, Case letterCase = Case::Small);
    // The letter, which is no longer pending.
    std::string take();

private:
    char m_digit = 0;
    std::size_t m_choice = 0;
    std::vector<std::string> m_letters;
    std::chrono::milliseconds m_deadline{0};
};

} // namespace DisplayAPI
