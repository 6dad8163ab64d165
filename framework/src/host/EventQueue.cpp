#include <framework/host/EventQueue.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include <framework/display/Command.h>
#include <framework/display/Displayable.h>
#include <framework/display/Item.h>
#include <framework/display/Listeners.h>

namespace DisplayAPI {

namespace {

struct Event {
    const char* name = "";
    const Item* item = nullptr;
    const CommandListener* commandListener = nullptr;
    const ItemStateListener* itemListener = nullptr;
    std::vector<std::weak_ptr<const void>> needs;
    std::function<void()> deliver;

    bool isVoid() const
    {
        return std::ranges::any_of(needs, [](const auto& needed) { return needed.expired(); });
    }
};

struct Pending {
    std::mutex mutex;
    std::deque<Event> events;

    void push(Event event)
    {
        const std::scoped_lock lock(mutex);
        events.push_back(std::move(event));
    }

    template <typename Predicate> void discardIf(Predicate predicate)
    {
        const std::scoped_lock lock(mutex);
        std::erase_if(events, predicate);
    }
};

Pending& pending()
{
    // Never destroyed: widgets with static storage still use it at exit.
    static auto& events = *new Pending;
    return events;
}

// An item event while its listener runs.
class Delivering {
public:
    explicit Delivering(const Item* item)
        : m_pItem(item)
        , m_alive(item->watch())
        , m_pOuter(s_pCurrent)
    {
        s_pCurrent = this;
    }
    ~Delivering() { s_pCurrent = m_pOuter; }

    Delivering(const Delivering&) = delete;
    Delivering& operator=(const Delivering&) = delete;

    static bool isOf(const Item* item)
    {
        return s_pCurrent && s_pCurrent->m_pItem == item && !s_pCurrent->m_alive.expired();
    }

private:
    static thread_local const Delivering* s_pCurrent;

    const Item* m_pItem;
    std::weak_ptr<const void> m_alive; // another item may come to live at the address of a dead one
    const Delivering* m_pOuter;
};

thread_local const Delivering* Delivering::s_pCurrent = nullptr;

} // namespace

void EventQueue::post(Command* command, Displayable* displayable, CommandListener* listener)
{
    if (!command || !displayable || !listener)
        return;
    Event event;
    event.name = "commandAction";
    event.commandListener = listener;
    event.needs = {command->watch(), displayable->watch()};
    event.deliver = [=] { listener->commandAction(command, displayable); };
    pending().push(std::move(event));
}

void EventQueue::post(Item* item, ItemStateListener* listener)
{
    if (!item || !listener)
        return;
    Event event;
    event.name = "itemStateChanged";
    event.item = item;
    event.itemListener = listener;
    event.needs = {item->watch()};
    event.deliver = [=] {
        const Delivering delivering(item);
        item->reporting();
        listener->itemStateChanged(item);
    };
    pending().push(std::move(event));
}

void EventQueue::post(Displayable* displayable, std::function<void()> action)
{
    Event event;
    event.name = "keyPressed";
    event.needs = {displayable->watch()};
    event.deliver = std::move(action);
    pending().push(std::move(event));
}

void EventQueue::deliver(const Around& around)
{
    while (deliverOne(around)) {
    }
}

bool EventQueue::deliverOne(const Around& around)
{
    Event event;
    do {
        auto& [mutex, events] = pending();
        const std::scoped_lock lock(mutex);
        if (events.empty())
            return false;
        event = std::move(events.front());
        events.pop_front();
    } while (event.isVoid());
    around(event.name, event.deliver);
    return true;
}

bool EventQueue::isDelivering(const Item* item)
{
    return Delivering::isOf(item);
}

bool EventQueue::isQueued(const Item* item)
{
    auto& [mutex, events] = pending();
    const std::scoped_lock lock(mutex);
    return item && std::ranges::any_of(
                       events, [&](const Event& event) { return event.item == item && !event.isVoid(); });
}

void EventQueue::discardAll()
{
    pending().discardIf([](const Event&) { return true; });
}

void EventQueue::discard(const CommandListener* listener)
{
    pending().discardIf([&](const Event& event) { return event.commandListener == listener; });
}

void EventQueue::discard(const ItemStateListener* listener)
{
    pending().discardIf([&](const Event& event) { return event.itemListener == listener; });
}

} // namespace DisplayAPI
