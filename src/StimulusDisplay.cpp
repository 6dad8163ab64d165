#include "StimulusDisplay.h"

#include <algorithm>

#include <framework/display/Display.h>

#include "PhonebookLog.h"

namespace {

// Log readers look for these lines under the mode, whose operations they name.
constexpr char nSOURCE[] = "./src/PhonebookMode";

// No display has more rows: a larger number would only fill the log, a line for each row.
constexpr int nLAST_ROW = 99;

} // namespace

std::string StimulusDisplay::getContents(int line) const
{
    if (!isKept(line)) {
        PB_ERROR("getContentsOfDisplay() - line = %d invalid", line);
        return {};
    }
    return m_contents[static_cast<std::size_t>(line)];
}

void StimulusDisplay::setContents(int line, const std::string& text)
{
    if (!isKept(line)) {
        PB_ERROR("setContentsOfDisplay() - line = %d invalid", line);
        return;
    }
    m_contents[static_cast<std::size_t>(line)] = text;
}

void StimulusDisplay::update(int row, const std::string& text)
{
    setContents(row, text);
    if (row < 0 || row > nLAST_ROW)
        return;
    if (!text.empty()) {
        m_lines = std::max(m_lines, row + 1);
        return;
    }
    for (int line = row + 1; line < m_lines; ++line)
        setContents(line, "");
    m_lines = row;
}

void StimulusDisplay::clear(DisplayAPI::Display& display)
{
    PB_TRACE("systemWindowDisplayClear()");
    if (m_lines == 0)
        return;
    for (int line = 0; line < m_lines; ++line) {
        setContents(line, "");
        display.setSystemWindowLine(line, "");
    }
    m_lines = 0;
    display.setSystemWindowSize(0);
}

void StimulusDisplay::mirror(DisplayAPI::Display& display) const
{
    display.setSystemWindowSize(m_lines);
    for (int line = 0; line < m_lines; ++line) {
        const std::string text = getContents(line);
        PB_TRACE("stim. line %d:<%s>", line, text.c_str());
        display.setSystemWindowLine(line, text);
    }
}
