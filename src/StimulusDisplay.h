// The PBX's display, mirrored into the telephone's system window.
//
// Its number of lines follows what the PBX says; of the lines themselves 0 to 5 are kept, the
// others read as empty. A row below 0 or above 99 is an error of the PBX: it changes nothing.

#pragma once

#include <array>
#include <string>

namespace DisplayAPI {
class Display;
}

class StimulusDisplay {
public:
    int lines() const { return m_lines; }
    void setLines(int lines) { m_lines = lines; }

    // "" for a line that is not kept.
    std::string getContents(int line) const;
    void setContents(int line, const std::string& text);

    // The PBX wrote a line: a text lengthens the display down to it, an empty one cuts it there.
    void update(int row, const std::string& text);
    void clear(DisplayAPI::Display& display);
    // Writes all lines into the system window.
    void mirror(DisplayAPI::Display& display) const;

private:
    static constexpr int nKEPT_LINES = 6;
    static bool isKept(int line) { return line >= 0 && line < nKEPT_LINES; }

    std::array<std::string, nKEPT_LINES> m_contents;
    int m_lines = 0;
};
