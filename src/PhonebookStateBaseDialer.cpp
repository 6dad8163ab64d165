#include "PhonebookStateBaseDialer.h"

#include <utility>

#include <framework/PhoneletIfc.h>
#include <framework/csta/CSTARequests.h>
#include <framework/csta/CSTAServiceIfc.h>
#include <framework/display/Display.h>
#include <framework/services/DigitAnalysisServiceIfc.h>
#include <framework/services/InterDigitTimeOutEvent.h>
#include <framework/util/HardwareVersion.h>

#include "EventContext.h"
#include "PhonebookLog.h"
#include "PhonebookMode.h"
#include "PhonebookPhonelet.h"

namespace {

constexpr char nSOURCE[] = "./src/PhonebookStateBaseDialer";

constexpr int nDIALLED_BY_HOST = 1;
constexpr int nSUCCESS = 0;
constexpr unsigned nNO_NUMBER_TIMEOUT_MS = 1000;

// How far a dial string is, for the digit analysis.
constexpr int nPARTIAL = 0;
constexpr int nCOMPLETE = 1;

bool isTdmVariant()
{
    const int variant = HardwareVersion::getHWVariant();
    return variant == 10 || variant == 11;
}

// None for a number that is not the entry's.
CallPartyIdentifier::PhoneNumberIconType iconOfNumber(const PhonebookFullEntry& entry,
                                                      const std::string& number)
{
    if (number == entry.getOffice())
        return CallPartyIdentifier::OFFICE;
    if (number == entry.getOffice2())
        return CallPartyIdentifier::OFFICE2;
    if (number == entry.getMobile())
        return CallPartyIdentifier::MOBILE;
    if (number == entry.getPrivate())
        return CallPartyIdentifier::PRIVATE;
    return CallPartyIdentifier::NONE;
}

} // namespace

PhonebookStateBaseDialer::~PhonebookStateBaseDialer() = default;

PhonebookStateBase* PhonebookStateBaseDialer::backEvent(EventContext* pContext, DisplayAPI::Command*,
                                                        DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateBaseDialer::backEvent()");
    if (pDisplayable != &pContext->m_PopupDialer)
        return this;
    dismissPopupDialer(pContext);
    setupPopupDialer(pContext, m_line1Prefix, m_line1Text, m_setupNumber, false);
    return this;
}

PhonebookStateBase* PhonebookStateBaseDialer::screenEvent(EventContext* pContext,
                                                          DisplayAPI::Command* pCommand,
                                                          DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateBaseDialer::screenEvent()");
    if (pDisplayable == &pContext->m_PopupLineSelectionNeeded) {
        PB_TRACE("PhonebookStateBaseDialer::m_PopupLineSelectionNeeded.screenEvent - hidden event off popup");
        m_lineSelectionPending = false;
        pContext->m_pDisplayableBeforePopup = nullptr;
        return this;
    }
    if (pDisplayable == &pContext->m_PopupNoLineAvailable) {
        PB_TRACE("PhonebookStateBaseDialer::m_PopupNoLineAvailable.screenEvent - hidden event off popup");
        pContext->m_pDisplayableBeforePopup = nullptr;
        return this;
    }
    if (pDisplayable != &pContext->m_PopupDialer || !pCommand)
        return this;

    const auto& commands = pContext->m_DialerCommands;
    if (pCommand == commands[DIALER_DIAL].get())
        return dialCommandChosen(pContext);
    if (pCommand == commands[DIALER_CANCEL].get())
        dismissPopupDialer(pContext);
    else if (pCommand == commands[DIALER_EDIT_NUMBER].get())
        editNumber(pContext, m_numberToDial);
    return this;
}

PhonebookStateBase* PhonebookStateBaseDialer::popupDiallerItemStateChangedEvent(EventContext* pContext,
                                                                                DisplayAPI::Item*)
{
    PB_TRACE("PhonebookStateBaseDialer::popupDiallerItemStateChangedEvent()");
    const std::string digits = pContext->m_PopupDialer.getLineEditText();
    if (pContext->m_pDigitAnalysisService)
        pContext->m_pDigitAnalysisService->setDialString(digits, nPARTIAL);

    if (m_pleaseDialMode) {
        pContext->m_PopupDialer.clearCommands();
        createDialCommand(pContext);
        addDialerCommands(pContext);
        m_pleaseDialMode = false;
    }
    if (digits.empty() && pContext->m_DialerCommands[DIALER_DIAL]) {
        removeDialCommand(pContext);
        addDialerCommands(pContext);
        m_pleaseDialMode = true;
    }
    return this;
}

PhonebookStateBase* PhonebookStateBaseDialer::interDigitTimeoutEvent(EventContext* pContext,
                                                                     InterDigitTimeOutEvent* pEvent)
{
    PB_TRACE("PhonebookStateBaseDialer::interDigitTimeoutEvent()");
    if (pEvent)
        m_numberToDial = pEvent->getDialString();
    dismissPopupDialer(pContext);
    // The call-request flag is neither asked nor set: the digits are complete, whatever else goes on.
    if (!makeCSTACall(pContext, m_numberToDial, m_callingDevice))
        return this;
    return stateAfterDialing(pContext);
}

void PhonebookStateBaseDialer::setCallContextProvider(EventContext* pContext)
{
    PB_TRACE("PhonebookStateBaseDialer::setCallContextProvider()");
    if (!pContext || !pContext->m_pPhonelet)
        return;
    if (!pContext->m_pPhonelet->isVisible()) {
        PB_TRACE("don't setCallContextProvider - Phonebook not visible");
        return;
    }
    if (!pContext->m_pDigitAnalysisService) {
        PB_ERROR("setCallContextProvider() - pEventContext->m_pDigitAnalysisService is NULL!!!");
        return;
    }
    if (!pContext->m_pDigitAnalysisService->setCallContextProvider(pContext->m_pListener))
        PB_ERROR("setCallContextProvider() - Failed");
}

void PhonebookStateBaseDialer::clearCallContextProvider(EventContext* pContext)
{
    PB_TRACE("clearCallContextProvider()");
    if (!pContext->m_pDigitAnalysisService) {
        PB_ERROR("clearCallContextProvider() - pEventContext->m_pDigitAnalysisService is NULL!!!");
        return;
    }
    if (!pContext->m_pDigitAnalysisService->clearCallContextProvider(pContext->m_pListener))
        PB_TRACE("clearCallContextProvider() - Failed to clear  call context provider");
}

bool PhonebookStateBaseDialer::makeCSTACall(EventContext* pContext, const std::string& number,
                                            const std::string& callingDevice)
{
    PB_TRACE("PhonebookStateBaseDialer::makeCSTACall()");
    if (number.empty()) {
        PB_TRACE("No number to dial");
        setupNotifyPopup(pContext);
        return false;
    }
    if (pContext->m_pPhoneletHandle &&
        pContext->m_pPhoneletHandle->dialNumber(number, callingDevice) == nDIALLED_BY_HOST)
        return true;

    CSTAMakeCallRequest request;
    if (!callingDevice.empty())
        request.SetCallingDevice(callingDevice);
    request.SetCalledDevice(number);
    PB_TRACE("PhonebookStateBaseDialer::makeCSTACall(): Number to dial is: %s", number.c_str());
    if (pContext->m_pCstaService)
        pContext->m_pCstaService->sendRequest(request);
    if (request.getResponseCode() == nSUCCESS) {
        pContext->m_LastDialledNumber = number;
        return true;
    }

    PB_TRACE(
        "PhonebookStateBaseDialer::makeCSTACall(): ERROR - CSTAMakeCallRequest() returned an Error Response "
        "while attempting to dial %s",
        number.c_str());
    // Without a service, or from one that does not say why, there is no cause to show.
    if (const auto* pError = dynamic_cast<const CSTAErrorCode*>(request.getResponse()))
        showRefusal(pContext, pError->getErrorCause(), number);
    pContext->m_LastDialledNumber.clear();
    return false;
}

bool PhonebookStateBaseDialer::makeCSTADirectedPickupCall(EventContext* pContext, const std::string& number,
                                                          const std::string& requestingDevice)
{
    PB_TRACE("PhonebookStateBaseDialer::makeCSTADirectedPickupCall()");
    if (number.empty()) {
        PB_TRACE("No number to dial");
        setupNotifyPopup(pContext);
        return false;
    }
    CSTADirectedPickupCallRequest request;
    if (!requestingDevice.empty())
        request.setRequestingDeviceID(requestingDevice);
    request.setCallToBePickedUp(number);
    PB_TRACE("PhonebookStateBaseDialer::makeCSTADirectedPickupCall(): Number to dial is: %s", number.c_str());
    if (!pContext->m_pCstaService)
        return false;
    pContext->m_pCstaService->sendRequest(request);
    return true;
}

void PhonebookStateBaseDialer::setupPopupDialer(EventContext* pContext, const std::string& prefix,
                                                const std::string& line1, const std::string& number,
                                                bool withoutDialCommand)
{
    PB_TRACE("PhonebookStateBaseDialer::setupPopupDialer()");
    using DisplayAPI::TranslationInfo;
    auto& dialer = pContext->m_PopupDialer;
    m_numberToDial = number;
    m_setupNumber = number;
    m_line1Prefix = prefix;
    m_line1Text = line1;
    m_pleaseDialMode = false;

    if (isTdmVariant()) {
        PB_TRACE("TDM ZD_HI - set no scroll on Popup dialler");
        dialer.setNoScroll();
    }
    dialer.showStimulusText(true);
    removeDialCommand(pContext);
    // What was typed before would replace the number.
    dialer.setText("");
    dialer.setEditMode(false);
    dialer.setLine1Prefix(prefix);
    if (!number.empty()) {
        dialer.setLine1(TranslationInfo::plain(line1));
        dialer.setLine2(number);
        if (!withoutDialCommand)
            createDialCommand(pContext);
    } else {
        dialer.setLine1(TranslationInfo("dialler.Please.Dial", pContext->m_pTranslator));
        dialer.setLine2("");
        if (!withoutDialCommand)
            createRedialCommand(pContext);
        m_pleaseDialMode = true;
    }
    addDialerCommands(pContext);
    rememberCurrentDisplayable(pContext);
    pContext->m_pDisplay->setCurrent(&dialer);
}

void PhonebookStateBaseDialer::setupNotifyPopup(EventContext* pContext)
{
    PB_TRACE("PhonebookStateBaseDialer::setupNotifyPopup()");
    auto& popup = pContext->m_PopupNotification;
    popup.setText(DisplayAPI::TranslationInfo("dialler.noNumber", pContext->m_pTranslator));
    popup.setType(DisplayAPI::PopupNotification::NOTICE);
    popup.setTimeout(nNO_NUMBER_TIMEOUT_MS);
    rememberCurrentDisplayable(pContext);
    pContext->m_pDisplay->setCurrent(&popup);
}

void PhonebookStateBaseDialer::dismissPopupDialer(EventContext* pContext)
{
    PB_TRACE("PhonebookStateBaseDialer::dismissPopupDialer()");
    auto* pDisplay = pContext->m_pDisplay;
    auto& dialer = pContext->m_PopupDialer;
    auto* pBefore = std::exchange(pContext->m_pDisplayableBeforePopup, nullptr);
    const bool wasOnTop = pDisplay && pDisplay->getCurrent() == &dialer;
    dialer.dismiss();
    // A popup that is newer than the dialler stays on top; one that went meanwhile does not come back.
    if (wasOnTop && pBefore && pDisplay->shows(*pBefore))
        pDisplay->setCurrent(pBefore);
}

void PhonebookStateBaseDialer::dismissDialingPopups(EventContext* pContext)
{
    PB_TRACE("PhonebookStateBaseDialer::dismissDialingPopups()");
    pContext->m_PopupDialer.dismiss();
    pContext->m_PopupLineSelectionNeeded.dismiss();
    m_lineSelectionPending = false;
    pContext->m_PopupNoLineAvailable.dismiss();
    pContext->m_pDisplayableBeforePopup = nullptr;
}

bool PhonebookStateBaseDialer::placeCall(EventContext* pContext, const std::string& number)
{
    PB_TRACE("PhonebookStateBaseDialer::placeCall()");
    pContext->setCallRequestInitiated(true);
    if (makeCSTACall(pContext, number, m_callingDevice))
        return true;
    pContext->setCallRequestInitiated(false);
    return false;
}

void PhonebookStateBaseDialer::openDialerWithDigits(EventContext* pContext, const std::string& digits)
{
    PB_TRACE("PhonebookStateBaseDialer::openDialerWithDigits()");
    setupPopupDialer(pContext, "", "", digits, false);
    if (!digits.empty())
        editNumber(pContext, digits);
}

void PhonebookStateBaseDialer::dialingEnded(EventContext* pContext)
{
    PB_TRACE("PhonebookStateBaseDialer::dialingEnded()");
    if (pContext->m_CallRequestInitiated)
        pContext->setCallRequestInitiated(false);
    dismissPopupDialer(pContext);
}

bool PhonebookStateBaseDialer::offerParty(CallPartyIdentifier& party, const PhonebookFullEntry& entry,
                                          const std::string& number,
                                          CallPartyIdentifier::PhoneNumberIconType icon)
{
    PB_TRACE("PhonebookStateBaseDialer::offerParty()");
    // Somebody else's number must not be shown under this name.
    if (number.empty() || (!party.getNumber().empty() && party.getNumber() != number))
        return false;
    party.setFirstname(entry.getFirstname());
    party.setSurname(entry.getSurname());
    party.setNumber(number);
    party.setIcon(icon);
    party.setPicture(entry.getPicture());
    return true;
}

bool PhonebookStateBaseDialer::offerEntry(CallPartyIdentifier& party, const PhonebookFullEntry& entry)
{
    PB_TRACE("PhonebookStateBaseDialer::offerEntry()");
    const bool isGiven = !party.getNumber().empty();
    const auto number = isGiven ? party.getNumber() : entry.getDefaultPhonebookNo();
    const auto icon = isGiven ? iconOfNumber(entry, number) : entry.getDefaultIcon();
    // Somebody else's number must not be shown under this name.
    return icon != CallPartyIdentifier::NONE && offerParty(party, entry, number, icon);
}

bool PhonebookStateBaseDialer::isDialingPopup(EventContext* pContext,
                                              const DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateBaseDialer::isDialingPopup()");
    return pDisplayable == &pContext->m_PopupDialer ||
           pDisplayable == &pContext->m_PopupLineSelectionNeeded ||
           pDisplayable == &pContext->m_PopupNoLineAvailable;
}

bool PhonebookStateBaseDialer::isRedialCommand(EventContext* pContext,
                                               const DisplayAPI::Command* pCommand) const
{
    PB_TRACE("PhonebookStateBaseDialer::isRedialCommand()");
    // Asking for a number, the dialler has no other dial command.
    return m_pleaseDialMode && pCommand && pCommand == pContext->m_DialerCommands[DIALER_DIAL].get();
}

PhonebookStateBase* PhonebookStateBaseDialer::dialCommandChosen(EventContext* pContext)
{
    PB_TRACE("PhonebookStateBaseDialer::dialCommandChosen()");
    const std::string typed = pContext->m_PopupDialer.getLineEditText();
    if (!typed.empty())
        m_numberToDial = typed;
    if (pContext->m_pDigitAnalysisService)
        pContext->m_pDigitAnalysisService->setDialString(m_numberToDial, nCOMPLETE);
    if (pContext->getCallRequestInitiated()) {
        PB_ERROR("screenEvent received when call already initiated - ignore");
        return this;
    }
    if (!placeCall(pContext, m_numberToDial))
        return this;
    return stateAfterDialing(pContext);
}

void PhonebookStateBaseDialer::editNumber(EventContext* pContext, const std::string& number)
{
    PB_TRACE("PhonebookStateBaseDialer::editNumber()");
    pContext->m_PopupDialer.setText(number);
    pContext->m_PopupDialer.setEditMode(true);
}

void PhonebookStateBaseDialer::showRefusal(EventContext* pContext, int cause, const std::string& number)
{
    PB_TRACE("PhonebookStateBaseDialer::showRefusal()");
    if (cause == CSTAErrorCode::NO_LINE_AVAILABLE) {
        showLinePopup(pContext, pContext->m_PopupNoLineAvailable);
        return;
    }
    if (cause != CSTAErrorCode::LINE_SELECTION_NEEDED)
        return;
    showLinePopup(pContext, pContext->m_PopupLineSelectionNeeded);
    m_lineSelectionPending = true;
    m_numberToDial = number;
}

void PhonebookStateBaseDialer::showLinePopup(EventContext* pContext, DisplayAPI::PopupNotification& popup)
{
    PB_TRACE("PhonebookStateBaseDialer::showLinePopup()");
    if (pContext->m_pDisplay->getCurrent() != &popup)
        rememberCurrentDisplayable(pContext);
    pContext->m_pDisplay->setCurrent(&popup);
}

void PhonebookStateBaseDialer::rememberCurrentDisplayable(EventContext* pContext)
{
    PB_TRACE("PhonebookStateBaseDialer::rememberCurrentDisplayable()");
    // What the dialler came over stays remembered while it is up: going back to the dialler itself
    // would make it impossible to close.
    auto* pCurrent = pContext->m_pDisplay->getCurrent();
    if (pCurrent != &pContext->m_PopupDialer)
        pContext->m_pDisplayableBeforePopup = pCurrent;
}

void PhonebookStateBaseDialer::createDialCommand(EventContext* pContext)
{
    PB_TRACE("PhonebookStateBaseDialer::createDialCommand()");
    pContext->m_DialerCommands[DIALER_DIAL] = std::make_unique<DisplayAPI::MenuCommand>(
        DisplayAPI::TranslationInfo("dialler.dial", pContext->m_pTranslator));
}

void PhonebookStateBaseDialer::createRedialCommand(EventContext* pContext)
{
    PB_TRACE("PhonebookStateBaseDialer::createRedialCommand()");
    const std::string number = pContext->getRedialNumber();
    if (number.empty())
        return;
    pContext->m_DialerCommands[DIALER_DIAL] = std::make_unique<DisplayAPI::MenuCommand>(
        DisplayAPI::TranslationInfo("dialler.redial", pContext->m_pTranslator, number));
    m_numberToDial = number;
}

void PhonebookStateBaseDialer::removeDialCommand(EventContext* pContext)
{
    PB_TRACE("PhonebookStateBaseDialer::removeDialCommand()");
    pContext->m_PopupDialer.clearCommands();
    pContext->m_DialerCommands[DIALER_DIAL].reset();
}

void PhonebookStateBaseDialer::addDialerCommands(EventContext* pContext)
{
    PB_TRACE("PhonebookStateBaseDialer::addDialerCommands()");
    auto& dialer = pContext->m_PopupDialer;
    const auto& commands = pContext->m_DialerCommands;
    if (commands[DIALER_DIAL])
        dialer.addCommand(commands[DIALER_DIAL].get());
    if (commands[DIALER_CANCEL])
        dialer.addCommand(commands[DIALER_CANCEL].get());
    if (commands[DIALER_EDIT_NUMBER] && !m_numberToDial.empty())
        dialer.addCommand(commands[DIALER_EDIT_NUMBER].get());
}
