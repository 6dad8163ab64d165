#include "LDAPStateViewingList.h"

#include <utility>

#include <framework/PhoneletIfc.h>
#include <framework/display/Display.h>
#include <framework/services/Utils.h>

#include "EventContext.h"
#include "PhonebookList.h"
#include "PhonebookLog.h"
#include "PhonebookMode.h"
#include "ShownProgress.h"
#include "Toolbox.h"

using DisplayAPI::TranslationInfo;
using enum DirectoryCommands::Choice;

namespace {

constexpr char nSOURCE[] = "./src/LDAPStateViewingList";

constexpr int nMENU_KIND = 1;

constexpr char nANY_TEXT = '*';
constexpr char nEXACT_TEXT = '#';
constexpr char nNAMES_APART = ',';
constexpr char nBLANK = ' ';

std::string before(const std::string& text, char mark)
{
    return text.substr(0, text.find(mark));
}

// Finds every name that begins with this one, unless the user says better.
std::string withWildcard(std::string name)
{
    if (!name.empty() && name.find(nANY_TEXT) == std::string::npos)
        name += nANY_TEXT;
    return name;
}

std::string withoutLastCharacter(std::string text)
{
    const auto continues = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; };
    while (!text.empty() && continues(text.back()))
        text.pop_back();
    if (!text.empty())
        text.pop_back();
    return text;
}

std::string withoutLeadingBlanks(const std::string& text)
{
    const auto first = text.find_first_not_of(nBLANK);
    return first == std::string::npos ? std::string() : text.substr(first);
}

} // namespace

LDAPStateViewingList::LDAPStateViewingList()
{
    PB_TRACE("LDAPStateViewingList::LDAPStateViewingList()");
    clearTextMembers();
}

LDAPStateViewingList::~LDAPStateViewingList() = default;

bool LDAPStateViewingList::tabValid(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::tabValid()");
    return pContext->m_pDisplay->getCurrent() != &pContext->m_PopupDialer;
}

PhonebookStateBase* LDAPStateViewingList::tabTo(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::tabTo()");
    m_trigger.resume(pContext);
    return this;
}

void LDAPStateViewingList::enterStateEvent(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::enterStateEvent()");
    setCallContextProvider(pContext);
    m_commands.constructMenuCommands(pContext);
    constructDisplayList(pContext);
    setDisplayListCurrent(pContext);
    m_popups.construct(pContext);
    m_trigger.prepare(pContext);
    clearTextMembers();
    m_ignoreNextItemEvent = false;
}

void LDAPStateViewingList::exitStateEvent(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::exitStateEvent()");
    clearCallContextProvider(pContext);
    dismissDialingPopups(pContext);
    clearTextMembers();
    m_trigger.remove(pContext);
}

PhonebookStateBase* LDAPStateViewingList::backEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                                    DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("LDAPStateViewingList::backEvent()");
    if (isDialingPopup(pContext, pDisplayable))
        return PhonebookStateBaseDialer::backEvent(pContext, pCommand, pDisplayable);
    if (m_pMenu && pDisplayable == m_pMenu.get()) {
        leaveMenu(pContext);
        return this;
    }
    if (pContext->m_pPhoneletHandle)
        pContext->m_pPhoneletHandle->leave("PhoneBookPhonelet"); // the host knows it by this spelling
    return this;
}

PhonebookStateBase* LDAPStateViewingList::okEvent(EventContext* pContext, DisplayAPI::Command*,
                                                  DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("LDAPStateViewingList::okEvent()");
    if (pDisplayable != pContext->m_pLdapDisplayList.get()) {
        PB_IGNORED("LDAPStateViewingList::okEvent - unrecognised widget");
        return this;
    }
    if (isLdapSearch(pContext, mTreatedSearchText, "")) {
        showLdapSearchResult(pContext, doLdapSearch(pContext), true);
        return this;
    }
    if (isOptionsRowSelected(pContext)) {
        enterListOptionsState(pContext);
        return this;
    }
    // An entry that cannot be read is not dialled: the one selected before it would be.
    if (!updateSelectedPhonebookEntry(pContext))
        return this;
    const auto number = getDefaultPhonebookNo(pContext);
    if (pContext->getCallRequestInitiated()) {
        PB_IGNORED("okEvent received when call already initiated - ignore");
        return this;
    }
    placeCall(pContext, number);
    return this;
}

PhonebookStateBase* LDAPStateViewingList::rightEvent(EventContext* pContext, DisplayAPI::Command*,
                                                     DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("LDAPStateViewingList::rightEvent()");
    if (pDisplayable != pContext->m_pLdapDisplayList.get()) {
        PB_IGNORED("LDAPStateViewingList::rightEvent - unrecognised widget");
        return this;
    }
    pContext->m_pLdapPhonebookList->setLDAPPhonebookList(true);
    pContext->m_LdapEntry.setLDAPPhonebookFullEntry(true);
    pContext->m_LdapEntry.setLDAPPhonebookListEntry(true);
    if (isOptionsRowSelected(pContext) || !holdsEntries(pContext))
        enterListOptionsState(pContext);
    else if (updateSelectedPhonebookEntry(pContext))
        enterEntryContextState(pContext);
    return this;
}

PhonebookStateBase* LDAPStateViewingList::screenEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                                      DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("LDAPStateViewingList::screenEvent()");
    if (m_pMenu && pDisplayable == m_pMenu.get())
        return choiceMade(pContext, pCommand);
    if (isDialingPopup(pContext, pDisplayable))
        return PhonebookStateBaseDialer::screenEvent(pContext, pCommand, pDisplayable);
    // Log readers match this text; its class name is part of it.
    PB_IGNORED("LDAPStateViewingListWithListOptionsContext::screenEvent - unrecognised widget");
    return this;
}

PhonebookStateBase* LDAPStateViewingList::itemStateChangedEvent(EventContext* pContext, DisplayAPI::Item*)
{
    PB_TRACE("LDAPStateViewingList::itemStateChangedEvent()");
    if (std::exchange(m_ignoreNextItemEvent, false))
        return this;
    const auto searchText = pContext->m_pLdapDisplayList->getSearchText();
    const auto delta = takeSearchText(pContext, searchText);
    if (!isLdapSearch(pContext, searchText, delta)) {
        stopLdapSearchTriggerTimer(pContext);
        selectClosestRow(pContext);
        return this;
    }
    parseSearchString(searchText);
    if (isImmediateLDAPSearch(pContext, searchText, delta))
        showLdapSearchResult(pContext, doLdapSearch(pContext), true);
    else
        searchLater(pContext);
    return this;
}

PhonebookStateBase* LDAPStateViewingList::dialingStartedEvent(EventContext* pContext, std::string digits)
{
    PB_TRACE("LDAPStateViewingList::dialingStartedEvent()");
    // What a search finds would take the dialler off the screen; OK searches for it later.
    if (takePendingLetter(pContext))
        parseSearchString(mTreatedSearchText);
    stopLdapSearchTriggerTimer(pContext);
    if (!digits.empty()) {
        openDialerWithDigits(pContext, digits);
        return this;
    }
    const bool known = !isOptionsRowSelected(pContext) && updateSelectedPhonebookEntry(pContext);
    const auto number = known ? getDefaultPhonebookNo(pContext) : std::string();
    const auto name = known ? shownName(pContext) : std::string();
    setupPopupDialer(pContext, "", name, number, false);
    return this;
}

bool LDAPStateViewingList::getDialPartyDetails(CallPartyIdentifier& party, EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::getDialPartyDetails()");
    return offerEntry(party, pContext->m_LdapEntry);
}

PhonebookStateBase* LDAPStateViewingList::dialingStoppedEvent(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::dialingStoppedEvent()");
    dialingEnded(pContext);
    return this;
}

PhonebookStateBase* LDAPStateViewingList::timerEvent(EventContext* pContext, int timerId)
{
    PB_TRACE("LDAPStateViewingList::timerEvent()");
    if (timerId != m_trigger.id()) {
        PB_ERROR("LDAPStateViewingList::timerEvent : invalid timerID");
        return this;
    }
    takePendingLetter(pContext);
    showLdapSearchResult(pContext, doLdapSearch(pContext), true);
    return this;
}

PhonebookStateBase* LDAPStateViewingList::buttonPressedEvent(EventContext* pContext,
                                                             PhysDefs::keyFunctionType function, int key,
                                                             PhysDefs::actionType action, std::string name)
{
    PB_TRACE("LDAPStateViewingList::buttonPressedEvent()");
    return PhonebookStateBaseDialer::buttonPressedEvent(pContext, function, key, action, std::move(name));
}

// --- What the typed text means ---

bool LDAPStateViewingList::isLdapSearch(EventContext* pContext, const std::string& searchText,
                                        const std::string& deltaSearchText)
{
    PB_TRACE("LDAPStateViewingList::isLdapSearch()");
    pContext->m_pLdapPhonebookList->setLDAPPhonebookList(true);
    const bool wanted = differsFromResults(pContext, searchText, deltaSearchText);
    PB_TRACE("LDAPStateViewingList::isLdapSearch = %i, SearchText = %s, DeltaSearchText = %s ", wanted,
             searchText.c_str(), deltaSearchText.c_str());
    return wanted;
}

bool LDAPStateViewingList::differsFromResults(EventContext* pContext, const std::string& searchText,
                                              const std::string& deltaSearchText)
{
    PB_TRACE("LDAPStateViewingList::differsFromResults()");
    if (mTreatedSearchText.empty()) {
        PB_TRACE("LDAPStateViewingList::isLdapSearch: empty search string");
        return false;
    }
    if (m_trigger.isRunning(pContext)) {
        PB_TRACE("LDAPStateViewingList::isLdapSearch: SearchTimer running");
        return true;
    }
    if (!holdsEntries(pContext)) {
        PB_TRACE("LDAPStateViewingList::isLdapSearch: empty list");
        return true;
    }
    int index = 0;
    if (!pContext->m_pLdapPhonebookList->getIndex(mTreatedSearchText, index)) {
        PB_TRACE("LDAPStateViewingList::isLdapSearch SearchString = %s", mTreatedSearchText.c_str());
        return true;
    }
    if (!isImmediateLDAPSearch(pContext, searchText, deltaSearchText))
        return false;
    PB_TRACE("LDAPStateViewingList::isLdapSearch Immediate Search");
    return true;
}

bool LDAPStateViewingList::isImmediateLDAPSearch(EventContext* pContext, const std::string& searchText,
                                                 const std::string& deltaSearchText)
{
    PB_TRACE("LDAPStateViewingList::isImmediateLDAPSearch()");
    const bool immediate = isSearchTrigger(pContext, searchText, deltaSearchText);
    PB_TRACE("LDAPStateViewingList::isImmediateLDAPSearch = %i, SearchText = %s, DeltaSearchText = %s ",
             immediate, searchText.c_str(), deltaSearchText.c_str());
    return immediate;
}

bool LDAPStateViewingList::isSearchTrigger(EventContext* pContext, const std::string& searchText,
                                           const std::string& deltaSearchText) const
{
    PB_TRACE("LDAPStateViewingList::isSearchTrigger()");
    if (deltaSearchText.empty())
        return false;
    const char typed = deltaSearchText.front();
    if (m_nicknameMode)
        return typed == nANY_TEXT;
    if (typed == nANY_TEXT || typed == nEXACT_TEXT)
        return !mTreatedSearchText.empty();
    if (typed != nNAMES_APART || pContext->m_pLdapDisplayList->size() != 1)
        return false;
    const auto comma = searchText.find(nNAMES_APART);
    return comma == std::string::npos || comma + 1 == searchText.size();
}

void LDAPStateViewingList::parseSearchString(const std::string& searchString)
{
    PB_TRACE("LDAPStateViewingList::parseSearchString()");
    m_firstname.clear();
    const auto comma = searchString.find(nNAMES_APART);
    if (m_nicknameMode) {
        m_surname = before(searchString, nANY_TEXT);
    } else if (comma == std::string::npos) {
        m_surname = before(withWildcard(searchString), nEXACT_TEXT);
    } else {
        m_surname = searchString.substr(0, comma);
        const auto rest = withoutLeadingBlanks(searchString.substr(comma + 1));
        m_firstname = before(withWildcard(rest), nEXACT_TEXT);
    }
    PB_TRACE("LDAPStateViewingList::parseSearchString SearchString = %s, Surname = %s, Firstname = %s",
             searchString.c_str(), m_surname.c_str(), m_firstname.c_str());
}

std::string LDAPStateViewingList::treatSearchText(const std::string& newText, const std::string& currentText,
                                                  const std::string& deltaSearchText) const
{
    PB_TRACE("LDAPStateViewingList::treatSearchText()");
    std::string text = newText;
    if (m_nicknameMode) {
        text = before(text, nANY_TEXT);
    } else {
        if (currentText.empty() && (deltaSearchText == "," || deltaSearchText == " "))
            text.clear();
        text = before(text, nEXACT_TEXT);
        const auto end = text.find(nANY_TEXT);
        text = text.substr(0, end);
        // A text that ended in the comma has its end there, which is no blank either.
        const auto comma = text.find(nNAMES_APART);
        if (comma != std::string::npos && comma + 1 < newText.size() && text[comma + 1] != nBLANK)
            text.insert(comma + 1, 1, nBLANK);
        // The end is that of before the blank came in: its last character goes then, as is intended.
        if (text.size() > end)
            text = withoutLastCharacter(std::move(text));
    }
    // Log readers match this text; the operation in it is another.
    PB_TRACE("LDAPStateViewingList::parseSearchString SearchTextNew = %s, SearchTextCurr = %s, "
             "SearchTextOld = %s, DeltaSearchText = %s",
             text.c_str(), newText.c_str(), currentText.c_str(), deltaSearchText.c_str());
    return text;
}

std::string LDAPStateViewingList::getLastQuickSearchInput(const std::string& oldText,
                                                          const std::string& newText) const
{
    PB_TRACE("LDAPStateViewingList::getLastQuickSearchInput()");
    return newText.size() > oldText.size() ? newText.substr(oldText.size()) : std::string();
}

void LDAPStateViewingList::setTreatedSearchText(const std::string& text)
{
    PB_TRACE("LDAPStateViewingList::setTreatedSearchText()");
    mTreatedSearchText = text;
}

const std::string& LDAPStateViewingList::getTreatedSearchText() const
{
    PB_TRACE("LDAPStateViewingList::getTreatedSearchText()");
    return mTreatedSearchText;
}

void LDAPStateViewingList::clearTextMembers()
{
    PB_TRACE("LDAPStateViewingList::clearTextMembers()");
    m_surname.clear();
    m_firstname.clear();
    mTreatedSearchText.clear();
}

std::string LDAPStateViewingList::takeSearchText(EventContext* pContext, const std::string& searchText)
{
    PB_TRACE("LDAPStateViewingList::takeSearchText()");
    m_nicknameMode = pContext->m_pLdapPhonebookList->isNicknameAttributeActive();
    const auto delta = getLastQuickSearchInput(mTreatedSearchText, searchText);
    setTreatedSearchText(treatSearchText(searchText, mTreatedSearchText, delta));
    pContext->m_pLdapDisplayList->setSearchText(mTreatedSearchText);
    return delta;
}

bool LDAPStateViewingList::takePendingLetter(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::takePendingLetter()");
    auto& list = *pContext->m_pLdapDisplayList;
    if (!list.stopKeypadTimerSaveAndExit())
        return false;
    takeSearchText(pContext, list.getSearchText());
    m_ignoreNextItemEvent = true;
    return true;
}

// The rows that no longer fit the text vanish meanwhile.
void LDAPStateViewingList::searchLater(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::searchLater()");
    startLdapSearchTriggerTimer(pContext);
    if (!holdsEntries(pContext))
        return;
    PB_TRACE("LDAPStateViewingList::itemStateChangedEvent - Clear non-empty list");
    pContext->m_pLdapDisplayList->clear();
    pContext->m_pLdapPhonebookList->depopulate();
    constructDisplayList(pContext);
    pContext->m_pLdapDisplayList->setSearchText(mTreatedSearchText);
}

void LDAPStateViewingList::selectClosestRow(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::selectClosestRow()");
    auto& list = *pContext->m_pLdapDisplayList;
    if (!holdsEntries(pContext)) {
        list.setSelectedIndex(0);
        return;
    }
    int index = 0;
    if (pContext->m_pLdapPhonebookList->getIndex(mTreatedSearchText, index))
        PB_TRACE("Exact match found, index in directory list = %d", index);
    else
        PB_TRACE("Closest match found, index in directory list = %d", index);
    const int row = static_cast<int>(
        Toolbox::phonebookToDisplayIndex(static_cast<unsigned>(index), pContext->m_HasSoftKeyBar));
    PB_TRACE("Selected index on display = %d", row);
    list.setSelectedIndex(row);
}

// --- The search ---

DirectoryStatus LDAPStateViewingList::doLdapSearch(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::doLdapSearch()");
    stopLdapSearchTriggerTimer(pContext);
    PhonebookSearchCriteria criteria(searchPairs(), "", true);
    auto& entries = *pContext->m_pLdapPhonebookList;
    pContext->m_pLdapDisplayList->clear();
    entries.depopulate();
    auto status = DIRECTORY_SUCCESS;
    {
        const ShownProgress progress(pContext, *m_popups.progress());
        status = static_cast<DirectoryStatus>(entries.populate(criteria, !m_nicknameMode));
        PB_TRACE("LDAPStateViewingList::doLdapSearch - dismiss ProgressPopup");
    }
    entries.convertToCanonical();
    return status;
}

AttributeList LDAPStateViewingList::searchPairs() const
{
    PB_TRACE("LDAPStateViewingList::searchPairs()");
    AttributeList pairs;
    if (!m_surname.empty()) {
        pairs.emplace_back(Utils::SURNAME, m_surname);
        pairs.emplace_back(Utils::NICKNAME, m_surname);
    }
    if (!m_firstname.empty())
        pairs.emplace_back(Utils::FIRSTNAME, m_firstname);
    return pairs;
}

void LDAPStateViewingList::showLdapSearchResult(EventContext* pContext, DirectoryStatus status,
                                                bool showPopup)
{
    PB_TRACE("LDAPStateViewingList::showLdapSearchResult()");
    auto& list = *pContext->m_pLdapDisplayList;
    auto& entries = *pContext->m_pLdapPhonebookList;
    list.clear();
    constructLdapDisplayList(pContext);
    list.showSearchPopup();
    setDisplayListCurrent(pContext);
    if (showPopup && status != DIRECTORY_SUCCESS)
        showResultPopup(pContext, status);

    if (status == DIRECTORY_SUCCESS && entries.getDisplayMode() != displayMode::SurnameFirstname) {
        // Log readers match this text; the operation in it is another.
        PB_TRACE("LDAPStateViewingList::itemStateChangedEvent - DISMISS SEARCH POPUP");
        clearTextMembers();
    } else if (status == DIRECTORY_SUCCESS) {
        list.setSelectedIndex(
            static_cast<int>(Toolbox::phonebookToDisplayIndex(0, pContext->m_HasSoftKeyBar)));
        if (entries.getNickNameResultIndicator())
            clearTextMembers();
    }
    list.showSearchPopup();
    list.setSearchText(mTreatedSearchText);
}

void LDAPStateViewingList::showResultPopup(EventContext* pContext, DirectoryStatus status)
{
    PB_TRACE("LDAPStateViewingList::showResultPopup()");
    m_popups.showResult(pContext, status);
}

DisplayAPI::PopupNotification* LDAPStateViewingList::getPErrorNotificationPopup() const
{
    PB_TRACE("LDAPStateViewingList::getPErrorNotificationPopup()");
    return m_popups.result();
}

void LDAPStateViewingList::startLdapSearchTriggerTimer(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::startLdapSearchTriggerTimer()");
    m_trigger.start(pContext);
}

void LDAPStateViewingList::stopLdapSearchTriggerTimer(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::stopLdapSearchTriggerTimer()");
    m_trigger.stop(pContext);
}

// --- The list ---

void LDAPStateViewingList::constructDisplayList(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::constructDisplayList()");
    auto& list = *pContext->m_pLdapDisplayList;
    if (list.size() == 0)
        constructLdapDisplayList(pContext);
    list.showSearchPopup();
}

void LDAPStateViewingList::setDisplayListCurrent(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::setDisplayListCurrent()");
    if (pContext->m_pTabScreen->numberOfTabs() > 0 && !isLdapTabCurrent(pContext))
        return;
    // A form may have been shown in the tabs' place.
    showInTab(pContext, *pContext->m_pLdapDisplayList);
}

bool LDAPStateViewingList::holdsEntries(EventContext* pContext) const
{
    PB_TRACE("LDAPStateViewingList::holdsEntries()");
    const int rows = pContext->m_pLdapDisplayList->size();
    if (rows != 1)
        return rows > 1;
    return pContext->m_HasSoftKeyBar && pContext->m_pLdapPhonebookList->size() > 0;
}

bool LDAPStateViewingList::isOptionsRowSelected(EventContext* pContext) const
{
    PB_TRACE("LDAPStateViewingList::isOptionsRowSelected()");
    return !pContext->m_HasSoftKeyBar && pContext->m_pLdapDisplayList->getSelectedIndex() == 0;
}

unsigned int LDAPStateViewingList::getSelectedPhonebookEntryIndex(EventContext* pContext) const
{
    PB_TRACE("LDAPStateViewingList::getSelectedPhonebookEntryIndex()");
    const int row = pContext->m_pLdapDisplayList->getSelectedIndex();
    return Toolbox::displayToPhonebookIndex(static_cast<unsigned>(row), pContext->m_HasSoftKeyBar);
}

bool LDAPStateViewingList::updateSelectedPhonebookEntry(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::updateSelectedPhonebookEntry()");
    auto& entries = *pContext->m_pLdapPhonebookList;
    const auto index = getSelectedPhonebookEntryIndex(pContext);
    if (index >= entries.size() || !entries.getFullEntry(index, pContext->m_LdapEntry))
        return false;
    pContext->m_LdapEntryIndex = static_cast<int>(index);
    return true;
}

std::string LDAPStateViewingList::getDefaultPhonebookNo(EventContext* pContext) const
{
    PB_TRACE("LDAPStateViewingList::getDefaultPhonebookNo()");
    return pContext->m_LdapEntry.getDefaultPhonebookNo();
}

std::string LDAPStateViewingList::shownName(EventContext* pContext) const
{
    PB_TRACE("LDAPStateViewingList::shownName()");
    auto& entries = *pContext->m_pLdapPhonebookList;
    return pContext->m_LdapEntry.getDisplayName(entries.getDisplayMode(), entries.getDisplayQualifier());
}

// --- The menus ---

const DirectoryCommands& LDAPStateViewingList::commands() const
{
    PB_TRACE("LDAPStateViewingList::commands()");
    return m_commands;
}

void LDAPStateViewingList::enterListOptionsState(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::enterListOptionsState()");
    m_commands.fillOptionsMenu(emptyMenu(pContext), holdsEntries(pContext));
    setMenuAsCurrentDisplay(pContext);
}

void LDAPStateViewingList::enterEntryContextState(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::enterEntryContextState()");
    auto& menu = emptyMenu(pContext);
    m_commands.fillEntryMenu(pContext, menu);
    menu.setTitle(TranslationInfo::plain(shownName(pContext)));
    setMenuAsCurrentDisplay(pContext);
}

DisplayAPI::ContextMenu& LDAPStateViewingList::emptyMenu(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::emptyMenu()");
    if (!m_pMenu) {
        m_pMenu = std::make_unique<DisplayAPI::ContextMenu>(nMENU_KIND);
        m_pMenu->setCommandListener(pContext->m_pListener);
    }
    m_pMenu->clearCommands();
    return *m_pMenu;
}

void LDAPStateViewingList::setMenuAsCurrentDisplay(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::setMenuAsCurrentDisplay()");
    pContext->m_pDisplay->setCurrent(m_pMenu.get());
}

void LDAPStateViewingList::leaveMenu(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::leaveMenu()");
    m_pMenu->dismiss();
    m_pMenu->clearCommands();
    setDisplayListCurrent(pContext);
}

// --- What was chosen ---

PhonebookStateBase* LDAPStateViewingList::choiceMade(EventContext* pContext,
                                                     const DisplayAPI::Command* pCommand)
{
    PB_TRACE("LDAPStateViewingList::choiceMade()");
    if (m_commands.dialCommands().owns(pCommand))
        return dialChosenNumber(pContext, pCommand);
    switch (m_commands.choiceOf(pCommand).value_or(nCHOICES)) {
    case ADVANCED_FIND:
        return &pContext->m_LdapFind;
    case DISPLAY_OPTIONS:
        return &pContext->m_LdapDisplayOptions;
    case QUALIFIER:
        return &pContext->m_LdapQualifierOptions;
    case CLEAR:
        clearResults(pContext);
        return this;
    case DETAILS:
        return &pContext->m_LdapDisplayingEntry;
    case SAVE:
        PB_TRACE("save LDAP entry into phonebook");
        return &pContext->m_LdapSavingEntry;
    default:
        PB_IGNORED("unrecognised event");
        return this;
    }
}

void LDAPStateViewingList::clearResults(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::clearResults()");
    // There is no text left that it could search for.
    stopLdapSearchTriggerTimer(pContext);
    pContext->m_pLdapPhonebookList->depopulate();
    // The retired widget may still be on the screen: it goes with the next clearing.
    pContext->m_pPreviousLdapDisplayList = std::move(pContext->m_pLdapDisplayList);
    pContext->reallocateLdapDisplayList(false);
    constructDisplayList(pContext);
    setDisplayListCurrent(pContext);
    clearTextMembers();
}

PhonebookStateBase* LDAPStateViewingList::dialChosenNumber(EventContext* pContext,
                                                           const DisplayAPI::Command* pCommand)
{
    PB_TRACE("LDAPStateViewingList::dialChosenNumber()");
    std::string number;
    auto icon = CallPartyIdentifier::NONE;
    transformCommandToPhoneNumberAndIcon(pContext, pCommand, number, icon);
    if (pContext->getCallRequestInitiated()) {
        PB_IGNORED("screenEvent received when call already initiated - ignore");
        return this;
    }
    if (!placeCall(pContext, number))
        return this;
    leaveMenu(pContext);
    return stateAfterDialing(pContext);
}

void LDAPStateViewingList::transformCommandToPhoneNumberAndIcon(
    EventContext* pContext, const DisplayAPI::Command* pCommand, std::string& number,
    CallPartyIdentifier::PhoneNumberIconType& icon)
{
    PB_TRACE("LDAPStateViewingList::transformCommandToPhoneNumberAndIcon()");
    m_commands.dialCommands().numberOf(pCommand, pContext->m_LdapEntry, number, icon);
}
