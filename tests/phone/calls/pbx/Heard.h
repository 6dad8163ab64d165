// What a link's thread told, in order; a test waits for each thing.

#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>

class Heard {
public:
    void add(const std::string& what)
    {
        std::lock_guard lock(m_mutex);
        m_all.push_back(what);
        m_changed.notify_all();
    }

    // "nothing" when nothing comes.
    std::string next()
    {
        std::unique_lock lock(m_mutex);
        if (!m_changed.wait_for(lock, std::chrono::seconds(10), [this] { return !m_all.empty(); }))
            return "nothing";
        auto first = m_all.front();
        m_all.pop_front();
        return first;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::string> m_all;
};
