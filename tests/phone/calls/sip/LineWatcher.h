// Hears what a line tells, and lets tests wait for it.

#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "calls/LineIfc.h"

class LineWatcher final : public LineObserverIfc {
public:
    struct Offer {
        std::string callId;
        Caller caller;
    };

    // Each returns whether that came about within ten seconds.
    bool isInService(const LineIfc& line, bool inService = true)
    {
        return waits([&] { return line.isInService() == inService; });
    }
    bool becomes(const std::string& callId, CallState state)
    {
        return waits([&] { return std::ranges::count(m_states[callId], state) > 0; });
    }
    bool ends(const std::string& callId, CallState state, CallEnd why)
    {
        return becomes(callId, state) && m_ends[callId] == why;
    }
    // The next call that comes in; without an id when none does.
    Offer offer()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, PATIENCE, [&] { return !m_offers.empty(); });
        if (m_offers.empty())
            return {};
        auto next = m_offers.front();
        m_offers.pop_front();
        return next;
    }
    bool hasOffer()
    {
        const std::lock_guard lock(m_mutex);
        return !m_offers.empty();
    }
    // As if nothing had been told.
    void forget()
    {
        const std::lock_guard lock(m_mutex);
        m_states.clear();
        m_ends.clear();
    }
    // All states that a call had, in order.
    std::vector<CallState> states(const std::string& callId)
    {
        const std::lock_guard lock(m_mutex);
        return m_states[callId];
    }

    void callStateChanged(const std::string& callId, CallState state, CallEnd why) override
    {
        change([&] {
            m_states[callId].push_back(state);
            if (state == CallState::Null || state == CallState::Failed)
                m_ends[callId] = why;
        });
    }
    std::string callOffered(LineIfc&, const Caller& caller) override
    {
        const auto id = "in " + std::to_string(++m_lastOffer);
        change([&] { m_offers.push_back({id, caller}); });
        return id;
    }
    void serviceChanged(LineIfc&) override
    {
        change([] {});
    }

private:
    static constexpr std::chrono::seconds PATIENCE{10};

    bool waits(const std::function<bool()>& condition)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, PATIENCE, condition);
    }
    void change(const std::function<void()>& what)
    {
        {
            const std::lock_guard lock(m_mutex);
            what();
        }
        m_changed.notify_all();
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::map<std::string, std::vector<CallState>> m_states;
    std::map<std::string, CallEnd> m_ends;
    std::deque<Offer> m_offers;
    int m_lastOffer = 0;
};
