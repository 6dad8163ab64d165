#include "SearchTrigger.h"

#include <algorithm>

#include <framework/PhoneletContext.h>

#include "EventContext.h"
#include "PhonebookControl.h"
#include "PhonebookList.h"
#include "PhonebookLog.h"
#include "PhonebookPhonelet.h"

namespace {

// Log readers look for these lines under the list, whose operations they name.
constexpr char nSOURCE[] = "./src/LDAPStateViewingList";

constexpr unsigned nDEFAULT_MS = 3000;

} // namespace

void SearchTrigger::prepare(EventContext* pContext)
{
    PB_TRACE("SearchTrigger::prepare()");
    const auto configured = configuredDuration(pContext);
    if (!configured)
        PB_IGNORED("LDAPStateViewingList::enterStateEvent - could not read timer value from DB");
    if (m_id != 0) {
        stop(pContext);
        return;
    }
    create(pContext, configured.value_or(nDEFAULT_MS));
    PB_TRACE("LDAPStateViewingList::enterStateEvent - Timer LdapSearchTrigger created TimerId = %i "
             "Duration = %i",
             m_id, static_cast<int>(m_duration));
}

void SearchTrigger::start(EventContext* pContext)
{
    PB_TRACE("SearchTrigger::start()");
    m_awaited = true;
    auto& timers = *pContext->m_pPhoneletContext;
    const bool reset = timers.resetTimer(m_id);
    PB_TRACE("LDAPStateViewingList::startLdapSearchTriggerTimer - Timer reset done = %i, TimerId = %i", reset,
             m_id);
    const bool running = timers.isTimerRunning(m_id);
    PB_TRACE("LDAPStateViewingList::startLdapSearchTriggerTimer - Timer running = %i, TimerId = %i", running,
             m_id);
    if (running)
        return;

    const auto configured = configuredDuration(pContext);
    if (!configured)
        PB_IGNORED("LDAPStateViewingList::startLdapSearchTriggerTimer - could not read timer value from DB");
    if (configured.value_or(0) != 0 && *configured != m_duration) {
        timers.deleteTimer(m_id);
        create(pContext, *configured);
        PB_TRACE("LDAPStateViewingList::startLdapSearchTriggerTimer - Timer LdapSearchTrigger created "
                 "TimerId = %i Duration = %i",
                 m_id, static_cast<int>(m_duration));
    }
    const bool started = timers.startTimer(m_id);
    PB_TRACE("LDAPStateViewingList::startLdapSearchTriggerTimer - Timer started = %i, TimerId = %i", started,
             m_id);
}

void SearchTrigger::resume(EventContext* pContext)
{
    PB_TRACE("SearchTrigger::resume()");
    if (m_awaited && !isRunning(pContext))
        start(pContext);
}

void SearchTrigger::stop(EventContext* pContext)
{
    PB_TRACE("SearchTrigger::stop()");
    m_awaited = false;
    const bool stopped = pContext->m_pPhoneletContext->stopTimer(m_id);
    PB_TRACE("LDAPStateViewingList::stopLdapSearchTriggerTimer - Timer stopped = %i, TimerId = %i", stopped,
             m_id);
}

void SearchTrigger::remove(EventContext* pContext)
{
    PB_TRACE("SearchTrigger::remove()");
    m_awaited = false;
    if (m_id == 0)
        return;
    if (!pContext->m_pPhoneletContext->deleteTimer(m_id)) {
        PB_ERROR("LDAPStateViewingList::exitStateEvent - LdapSearchTrigger NOT deleted. TimerId = %i", m_id);
        return;
    }
    PB_TRACE("LDAPStateViewingList::exitStateEvent - LdapSearchTrigger deleted. TimerId = %i", m_id);
    m_id = 0;
}

bool SearchTrigger::isRunning(EventContext* pContext) const
{
    PB_TRACE("SearchTrigger::isRunning()");
    return pContext->m_pPhoneletContext->isTimerRunning(m_id);
}

int SearchTrigger::id() const
{
    PB_TRACE("SearchTrigger::id()");
    return m_id;
}

std::optional<unsigned> SearchTrigger::configuredDuration(EventContext* pContext)
{
    PB_TRACE("SearchTrigger::configuredDuration()");
    auto* pPhonelet = pContext->m_pPhonelet;
    auto* pControl = pPhonelet ? pPhonelet->getPhonebookControl() : nullptr;
    auto* pLocalMgmt = pControl ? pControl->getLocalManagementService() : nullptr;
    if (!pLocalMgmt)
        return std::nullopt;
    const int ms = pContext->m_pLdapPhonebookList->getSearchTriggerTimeoutFromDatabase(pLocalMgmt);
    return static_cast<unsigned>(std::max(ms, 0));
}

void SearchTrigger::create(EventContext* pContext, unsigned duration)
{
    PB_TRACE("SearchTrigger::create()");
    m_duration = duration;
    m_id = pContext->m_pPhoneletContext->createTimer(pContext->m_pPhonelet, m_duration);
}
