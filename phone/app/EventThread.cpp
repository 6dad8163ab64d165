#include "app/EventThread.h"

#include <exception>
#include <future>

#include <framework/host/EventQueue.h>

#include "app/PhoneLog.h"

using std::chrono::milliseconds;

namespace {

constexpr char nSOURCE[] = "./phone/app/EventThread";

void guarded(const char* name, const std::function<void()>& call)
{
    try {
        call();
    } catch (const std::exception& error) {
        PHONE_ERROR("event \"%s\" ended with an exception: %s", name, error.what());
    } catch (...) {
        PHONE_ERROR("event \"%s\" ended with an exception", name);
    }
}

} // namespace

EventThread::EventThread(const Clock& clock)
    : m_clock(clock)
{
}

EventThread::~EventThread()
{
    stop();
}

void EventThread::start()
{
    m_thread = std::thread([this] { loop(); });
}

void EventThread::stop()
{
    std::deque<Event> first;
    std::deque<Event> queue;
    std::multimap<milliseconds, Timed> timed;
    {
        std::lock_guard lock(m_mutex);
        m_stopped = true;
        first.swap(m_first); // destroyed without the lock: an event may hold anything
        queue.swap(m_queue);
        timed.swap(m_timed);
    }
    m_changed.notify_all();
    if (m_thread.joinable() && m_thread.get_id() != std::this_thread::get_id())
        m_thread.join();
}

void EventThread::stopAfter(std::string name, std::function<void()> last)
{
    postFirst("stop", [this, name = std::move(name), last = std::move(last)] {
        deliver(name.c_str(), last);
        stop();
    });
    if (m_thread.joinable())
        m_thread.join();
    else
        runPending();
}

void EventThread::post(std::string name, std::function<void()> event)
{
    {
        std::lock_guard lock(m_mutex);
        if (m_stopped)
            return;
        m_queue.push_back({std::move(name), std::move(event)});
    }
    m_changed.notify_one();
}

void EventThread::postFirst(std::string name, std::function<void()> event)
{
    {
        std::lock_guard lock(m_mutex);
        if (m_stopped)
            return;
        m_first.push_back({std::move(name), std::move(event)});
    }
    m_changed.notify_one();
}

EventTimers::Id EventThread::callAt(milliseconds when, std::string name, std::function<void()> event)
{
    Id id = 0;
    {
        std::lock_guard lock(m_mutex);
        id = ++m_lastId;
        if (m_stopped)
            return id;
        m_timed.emplace(when, Timed{id, {std::move(name), std::move(event)}});
    }
    m_changed.notify_one();
    return id;
}

void EventThread::cancel(Id id)
{
    std::lock_guard lock(m_mutex);
    std::erase_if(m_timed, [id](const auto& entry) { return entry.second.id == id; });
}

bool EventThread::waitUntilDone(milliseconds limit)
{
    auto passed = std::make_shared<std::promise<void>>();
    auto done = passed->get_future();
    post("wait", [passed] { passed->set_value(); });
    passed.reset(); // a queue that stops breaks the promise, which ends the wait too
    return done.wait_for(limit) == std::future_status::ready;
}

void EventThread::deliver(const char* name, const std::function<void()>& call)
{
    guarded(name, call);
    DisplayAPI::EventQueue::deliver(guarded);
}

void EventThread::runPending()
{
    Event event;
    while (takeNext(event))
        run(event);
}

void EventThread::advance(ManualClock& clock, milliseconds by)
{
    const auto end = clock.now() + by;
    runPending();
    for (;;) {
        auto next = end;
        {
            std::lock_guard lock(m_mutex);
            if (!m_timed.empty() && m_timed.begin()->first < end)
                next = m_timed.begin()->first;
        }
        if (next > clock.now())
            clock.advance(next - clock.now());
        runPending();
        if (next == end)
            return;
    }
}

void EventThread::loop()
{
    Event event;
    for (;;) {
        if (takeNext(event)) {
            run(event);
            event = {};
            continue;
        }
        std::unique_lock lock(m_mutex);
        if (m_stopped)
            return;
        if (!m_first.empty() || !m_queue.empty())
            continue;
        if (m_timed.empty()) {
            m_changed.wait(lock);
            continue;
        }
        m_changed.wait_for(lock, m_timed.begin()->first - m_clock.now());
    }
}

bool EventThread::takeNext(Event& event)
{
    std::lock_guard lock(m_mutex);
    queueDue();
    auto& queue = m_first.empty() ? m_queue : m_first;
    if (queue.empty())
        return false;
    event = std::move(queue.front());
    queue.pop_front();
    return true;
}

void EventThread::queueDue()
{
    const auto now = m_clock.now();
    while (!m_timed.empty() && m_timed.begin()->first <= now) {
        m_queue.push_back(std::move(m_timed.begin()->second.event));
        m_timed.erase(m_timed.begin());
    }
}

void EventThread::run(const Event& event)
{
    deliver(event.name.c_str(), event.run);
    if (m_done)
        guarded("frame", m_done);
}
