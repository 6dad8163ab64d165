#include "ListCommands.h"

#include <algorithm>

#include "EventContext.h"
#include "PhonebookList.h"
#include "PhonebookLog.h"
#include "PhonebookMode.h"
#include "Toolbox.h"

using DisplayAPI::TranslationInfo;

namespace {
constexpr char nSOURCE[] = "./src/ListCommands";
}

ListCommands::ListCommands() = default;

ListCommands::~ListCommands() = default;

void ListCommands::constructMenuCommands(EventContext* pContext)
{
    PB_TRACE("ListCommands::constructMenuCommands()");
    if (m_commands[NEW_CONTACT])
        return;
    create(pContext, NEW_CONTACT, "new.contact");
    create(pContext, DISPLAY_OPTIONS, "display");
    create(pContext, DELETE_ALL, "delete.all");
    create(pContext, FIND, "find");
    create(pContext, BACKUP, "backup");
    create(pContext, RESTORE, "restore");
    create(pContext, GROUPS, "groups.menu");
    m_dialCommands.construct(pContext);
    create(pContext, DIRECTED_PICKUP, "directed.pickup");
    create(pContext, DETAILS, "details");
    create(pContext, DELETE_ENTRY, "delete");
    create(pContext, SECOND_FIND, "find");
    create(pContext, SEND, "send");
    create(pContext, SECOND_NEW_CONTACT, "new.contact");
    create(pContext, CONFIRM_DELETE_ALL, "delete.all.entries");
    create(pContext, CONFIRM_DELETE, "delete");
    create(pContext, CANCEL, "cancel");
}

DisplayAPI::MenuCommand* ListCommands::command(Choice choice) const
{
    PB_TRACE("ListCommands::command()");
    return m_commands[choice].get();
}

const DialCommands& ListCommands::dialCommands() const
{
    PB_TRACE("ListCommands::dialCommands()");
    return m_dialCommands;
}

std::optional<ListCommands::Choice> ListCommands::choiceOf(const DisplayAPI::Command* pCommand) const
{
    PB_TRACE("ListCommands::choiceOf()");
    const auto found = std::find_if(m_commands.begin(), m_commands.end(),
                                    [&](const auto& pOwn) { return pOwn && pOwn.get() == pCommand; });
    if (found == m_commands.end())
        return std::nullopt;
    return static_cast<Choice>(found - m_commands.begin());
}

void ListCommands::fillOptionsMenu(EventContext* pContext) const
{
    PB_TRACE("ListCommands::fillOptionsMenu()");
    pContext->m_ContextMenu.clearCommands();
    addMenuItem(pContext, NEW_CONTACT);
    if (pContext->m_pPhonebookList->size() > 0) {
        addMenuItem(pContext, DISPLAY_OPTIONS);
        addMenuItem(pContext, DELETE_ALL);
    }
    addMenuItem(pContext, GROUPS);
}

void ListCommands::fillEntryMenu(EventContext* pContext) const
{
    PB_TRACE("ListCommands::fillEntryMenu()");
    auto& menu = pContext->m_ContextMenu;
    menu.clearCommands();
    m_dialCommands.addTo(menu, pContext->m_SelectedEntry, pContext->m_HasSoftKeyBar);
    if (pContext->m_HasSoftKeyBar)
        fillEntryMenuWithSoftKeyBar(pContext);
    else
        fillEntryMenuWithoutSoftKeyBar(pContext);
}

void ListCommands::create(EventContext* pContext, Choice choice, const char* key)
{
    PB_TRACE("ListCommands::create()");
    m_commands[choice] =
        std::make_unique<DisplayAPI::MenuCommand>(TranslationInfo(key, pContext->m_pTranslator));
}

void ListCommands::fillEntryMenuWithSoftKeyBar(EventContext* pContext) const
{
    PB_TRACE("ListCommands::fillEntryMenuWithSoftKeyBar()");
    addMenuItem(pContext, DETAILS);
    addDirectedPickupMenuItem(pContext);
    addMenuItem(pContext, NEW_CONTACT);
    addMenuItem(pContext, GROUPS);
    addMenuItem(pContext, DELETE_ENTRY);
    addMenuItem(pContext, DISPLAY_OPTIONS);
    addMenuItem(pContext, DELETE_ALL);
    addSendMenuItem(pContext);
}

void ListCommands::fillEntryMenuWithoutSoftKeyBar(EventContext* pContext) const
{
    PB_TRACE("ListCommands::fillEntryMenuWithoutSoftKeyBar()");
    addMenuItem(pContext, DETAILS);
    addMenuItem(pContext, DELETE_ENTRY);
    addSendMenuItem(pContext);
    addMenuItem(pContext, SECOND_NEW_CONTACT);
    addDirectedPickupMenuItem(pContext);
}

void ListCommands::addMenuItem(EventContext* pContext, Choice choice) const
{
    PB_TRACE("ListCommands::addMenuItem()");
    pContext->m_ContextMenu.addCommand(m_commands[choice].get());
}

void ListCommands::addDirectedPickupMenuItem(EventContext* pContext) const
{
    PB_TRACE("ListCommands::addDirectedPickupMenuItem()");
    if (pContext->m_pListener && pContext->m_pListener->getSoftwareType() == PhonebookMode::SIP)
        addMenuItem(pContext, DIRECTED_PICKUP);
}

void ListCommands::addSendMenuItem(EventContext* pContext) const
{
    PB_TRACE("ListCommands::addSendMenuItem()");
    if (checkBluetoothAvailable(pContext))
        addMenuItem(pContext, SEND);
}

bool ListCommands::checkBluetoothAvailable(EventContext* pContext)
{
    PB_TRACE("ListCommands::checkBluetoothAvailable()");
    return Toolbox::getValueFromOCMS(pContext->m_pLocalMgmt, "bt-enabled") == "true" &&
           Toolbox::getValueFromOCMS(pContext->m_pLocalMgmt, "bt-active") == "true";
}
