// The group that the telephone itself makes, for contacts of the corporate directory: it is stored under
// a key, shown in the telephone's language, and goes to others under the name that is shown.

#pragma once

#include <string>
#include <utility>

class OwnGroup {
public:
    static constexpr char nKEY[] = "group.copied.contacts";

    explicit OwnGroup(std::string shown = nKEY)
        : m_shown(std::move(shown))
    {
    }

    std::string shown(const std::string& stored) const { return stored == nKEY ? m_shown : stored; }
    std::string stored(const std::string& shown) const { return shown == m_shown ? nKEY : shown; }

private:
    std::string m_shown;
};
