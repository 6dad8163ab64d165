// Keeps every log line while it lives, in order, whatever its level.

#pragma once

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include <framework/util/AppLog.h>

struct LogLine {
    std::string component;
    std::string file;
    int level;
    std::string text;
};

class LogCapture final : public AppLogSink {
public:
    LogCapture()
        : m_before(AppLog::setSink(this))
    {
    }
    ~LogCapture() override { AppLog::setSink(m_before); }

    bool isEnabled(const char*, int) const override { return true; }

    void write(const char* component, const char* file, int level, int, const std::string& text) override
    {
        const std::lock_guard lock(m_mutex);
        m_lines.push_back({component, file, level, text});
    }

    std::vector<LogLine> lines() const
    {
        const std::lock_guard lock(m_mutex);
        return m_lines;
    }

    // How often a line with exactly this text was written, at this level (any, if it is 0).
    int count(const std::string& text, int level = 0) const
    {
        const auto all = lines();
        return static_cast<int>(std::count_if(all.begin(), all.end(), [&](const LogLine& line) {
            return line.text == text && (level == 0 || line.level == level);
        }));
    }
    bool has(const std::string& text, int level = 0) const { return count(text, level) > 0; }

    // The texts of one level, in order.
    std::vector<std::string> texts(int level) const
    {
        std::vector<std::string> texts;
        for (const auto& line : lines())
            if (line.level == level)
                texts.push_back(line.text);
        return texts;
    }

    // Position of the first line with this text, -1 for none: for orders.
    int position(const std::string& text) const
    {
        const auto all = lines();
        const auto found =
            std::find_if(all.begin(), all.end(), [&](const LogLine& line) { return line.text == text; });
        return found == all.end() ? -1 : static_cast<int>(found - all.begin());
    }

    void clear()
    {
        const std::lock_guard lock(m_mutex);
        m_lines.clear();
    }

private:
    AppLogSink* m_before;
    mutable std::mutex m_mutex;
    std::vector<LogLine> m_lines;
};
