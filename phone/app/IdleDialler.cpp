#include "app/IdleDialler.h"

#include <framework/services/CallPartyIdentifier.h>
#include <framework/services/InterDigitTimeOutEvent.h>

void IdleDialler::typed(char digit)
{
    m_digits += digit;
    m_refusal.clear();
    m_actions.changed(m_digits);
}

void IdleDialler::clear()
{
    if (m_digits.empty())
        return;
    m_digits.pop_back();
    m_actions.changed(m_digits);
}

void IdleDialler::clearAll()
{
    m_refusal.clear();
    if (m_digits.empty())
        return;
    m_digits.clear();
    m_actions.changed(m_digits);
}

void IdleDialler::dial()
{
    if (!m_digits.empty())
        call(m_digits);
}

void IdleDialler::handleInterDigitTimeout(InterDigitTimeOutEvent* event)
{
    call(event->getDialString());
}

void IdleDialler::handleInitialDigitTimeout(InterDigitTimeOutEvent*) {}

// The digits themselves come by typed(), one by one.
void IdleDialler::handleDialingStarted(const std::string&) {}

void IdleDialler::handleDialingStarted(const std::string&, CallPartyIdentifier) {}

void IdleDialler::handleDialingStopped()
{
    m_digits.clear();
    m_refusal.clear();
}

bool IdleDialler::getDialPartyDetails(CallPartyIdentifier&)
{
    return false;
}

// By value: the number may be the digits that are cleared here.
void IdleDialler::call(std::string number)
{
    m_digits.clear();
    m_actions.changed(m_digits);
    m_refusal = m_actions.call(number);
}
