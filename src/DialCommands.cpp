#include "DialCommands.h"

#include <algorithm>

#include "EventContext.h"
#include "PhonebookLog.h"

using DisplayAPI::DisplayIcon;

namespace {
constexpr char nSOURCE[] = "./src/DialCommands";
}

DialCommands::DialCommands() = default;

DialCommands::~DialCommands() = default;

void DialCommands::construct(EventContext* pContext)
{
    PB_TRACE("DialCommands::construct()");
    create(pContext, OFFICE, DisplayIcon::Office);
    create(pContext, OFFICE2, DisplayIcon::Office2);
    create(pContext, PRIVATE, DisplayIcon::Private);
    create(pContext, MOBILE, DisplayIcon::Mobile);
    create(pContext, DEFAULT, DisplayIcon::None);
}

DisplayAPI::MenuCommand* DialCommands::command(Choice choice) const
{
    PB_TRACE("DialCommands::command()");
    return m_commands[choice].get();
}

bool DialCommands::owns(const DisplayAPI::Command* pCommand) const
{
    PB_TRACE("DialCommands::owns()");
    return pCommand && std::any_of(m_commands.begin(), m_commands.end(),
                                   [pCommand](const auto& pOwn) { return pOwn.get() == pCommand; });
}

void DialCommands::addTo(DisplayAPI::ContextMenu& menu, const PhonebookFullEntry& entry,
                         bool hasSoftKeyBar) const
{
    PB_TRACE("DialCommands::addTo()");
    if (hasSoftKeyBar) {
        menu.addCommand(m_commands[DEFAULT].get());
        return;
    }
    addNumber(menu, OFFICE, entry.getOffice());
    addNumber(menu, OFFICE2, entry.getOffice2());
    addNumber(menu, MOBILE, entry.getMobile());
    addNumber(menu, PRIVATE, entry.getPrivate());
}

void DialCommands::numberOf(const DisplayAPI::Command* pCommand, const PhonebookFullEntry& entry,
                            std::string& number, CallPartyIdentifier::PhoneNumberIconType& icon) const
{
    PB_TRACE("DialCommands::numberOf()");
    const auto is = [this, pCommand](Choice choice) { return pCommand == m_commands[choice].get(); };
    // Call-party icons: not those of the rows and commands.
    const auto take = [&number, &icon](const std::string& of, CallPartyIdentifier::PhoneNumberIconType its) {
        number = of;
        icon = its;
    };
    if (!pCommand)
        take("", CallPartyIdentifier::NONE);
    else if (is(OFFICE))
        take(entry.getOffice(), CallPartyIdentifier::OFFICE);
    else if (is(OFFICE2))
        take(entry.getOffice2(), CallPartyIdentifier::OFFICE2);
    else if (is(PRIVATE))
        take(entry.getPrivate(), CallPartyIdentifier::PRIVATE);
    else if (is(MOBILE))
        take(entry.getMobile(), CallPartyIdentifier::MOBILE);
    else
        take(entry.getDefaultPhonebookNo(), entry.getDefaultIcon());
}

void DialCommands::create(EventContext* pContext, Choice choice, DisplayIcon icon)
{
    PB_TRACE("DialCommands::create()");
    m_commands[choice] = std::make_unique<DisplayAPI::MenuCommand>(
        DisplayAPI::TranslationInfo("dial", pContext->m_pTranslator), static_cast<int>(icon));
}

void DialCommands::addNumber(DisplayAPI::ContextMenu& menu, Choice choice, const std::string& number) const
{
    PB_TRACE("DialCommands::addNumber()");
    if (!number.empty())
        menu.addCommand(m_commands[choice].get());
}
