#include "DirectoryCommands.h"

#include <algorithm>

#include "EventContext.h"
#include "PhonebookLog.h"

namespace {
constexpr char nSOURCE[] = "./src/DirectoryCommands";
}

DirectoryCommands::DirectoryCommands() = default;

DirectoryCommands::~DirectoryCommands() = default;

void DirectoryCommands::constructMenuCommands(EventContext* pContext)
{
    PB_TRACE("DirectoryCommands::constructMenuCommands()");
    if (m_commands[ADVANCED_FIND])
        return;
    create(pContext, ADVANCED_FIND, "advanced.find");
    create(pContext, DISPLAY_OPTIONS, "display");
    create(pContext, QUALIFIER, "qualifier");
    create(pContext, CLEAR, "clear");
    m_dialCommands.construct(pContext);
    create(pContext, DETAILS, "details");
    create(pContext, SAVE, "save");
}

DisplayAPI::MenuCommand* DirectoryCommands::command(Choice choice) const
{
    PB_TRACE("DirectoryCommands::command()");
    return m_commands[choice].get();
}

const DialCommands& DirectoryCommands::dialCommands() const
{
    PB_TRACE("DirectoryCommands::dialCommands()");
    return m_dialCommands;
}

std::optional<DirectoryCommands::Choice>
DirectoryCommands::choiceOf(const DisplayAPI::Command* pCommand) const
{
    PB_TRACE("DirectoryCommands::choiceOf()");
    const auto found = std::find_if(m_commands.begin(), m_commands.end(),
                                    [&](const auto& pOwn) { return pOwn && pOwn.get() == pCommand; });
    if (found == m_commands.end())
        return std::nullopt;
    return static_cast<Choice>(found - m_commands.begin());
}

void DirectoryCommands::fillOptionsMenu(DisplayAPI::ContextMenu& menu, bool listHoldsEntries) const
{
    PB_TRACE("DirectoryCommands::fillOptionsMenu()");
    menu.addCommand(command(ADVANCED_FIND));
    if (listHoldsEntries)
        menu.addCommand(command(DISPLAY_OPTIONS));
    menu.addCommand(command(QUALIFIER));
    if (listHoldsEntries)
        menu.addCommand(command(CLEAR));
}

void DirectoryCommands::fillEntryMenu(EventContext* pContext, DisplayAPI::ContextMenu& menu) const
{
    PB_TRACE("DirectoryCommands::fillEntryMenu()");
    m_dialCommands.addTo(menu, pContext->m_LdapEntry, pContext->m_HasSoftKeyBar);
    for (const auto choice : {DETAILS, ADVANCED_FIND, CLEAR, SAVE})
        menu.addCommand(command(choice));
    if (!pContext->m_HasSoftKeyBar)
        return;
    menu.addCommand(command(DISPLAY_OPTIONS));
    menu.addCommand(command(QUALIFIER));
}

void DirectoryCommands::create(EventContext* pContext, Choice choice, const char* key)
{
    PB_TRACE("DirectoryCommands::create()");
    m_commands[choice] =
        std::make_unique<DisplayAPI::MenuCommand>(DisplayAPI::TranslationInfo(key, pContext->m_pTranslator));
}
