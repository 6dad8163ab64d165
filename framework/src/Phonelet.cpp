#include <framework/Phonelet.h>

#include <framework/PhoneletContext.h>

Phonelet::Phonelet() = default;

Phonelet::~Phonelet() = default;

void Phonelet::init(PhoneletContext* context)
{
    m_pContext = context;
}

void Phonelet::requestFocus()
{
    if (m_pContext)
        m_pContext->requestFocus(this);
}

void Phonelet::releaseFocus()
{
    if (m_pContext)
        m_pContext->releaseFocus(this);
}
