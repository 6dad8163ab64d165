// What every screen that places calls has in common: the dialler popup, the call requests, what
// is shown when a request is refused, and hearing of the digits that the user types off-hook.
//
// Who places a call keeps the call-request flag of the context: test it, set it, and clear it
// again when makeCSTACall() returns false.

#pragma once

#include <string>

#include <framework/services/CallPartyIdentifier.h>

#include "PhonebookStateBase.h"

namespace DisplayAPI {
class PopupNotification;
}
class PhonebookFullEntry;

class PhonebookStateBaseDialer : public PhonebookStateBase {
public:
    PhonebookStateBase* backEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                  DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* screenEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                    DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* popupDiallerItemStateChangedEvent(EventContext* pContext,
                                                          DisplayAPI::Item* pItem) override;
    PhonebookStateBase* interDigitTimeoutEvent(EventContext* pContext,
                                               InterDigitTimeOutEvent* pEvent) override;
    void setCallContextProvider(EventContext* pContext) override;
    void clearCallContextProvider(EventContext* pContext) override;
    virtual ~PhonebookStateBaseDialer();

    // Places a call: the host may dial the number itself, else a request is sent. True when it was
    // placed. A refusal for want of a line or of a choice among lines is shown to the user.
    bool makeCSTACall(EventContext* pContext, const std::string& number, const std::string& callingDevice);
    // Picks up the call that rings at `number`. True whenever there was a number: a pickup that fails
    // does nothing.
    bool makeCSTADirectedPickupCall(EventContext* pContext, const std::string& number,
                                    const std::string& requestingDevice);

    // Opens the dialler with a number, or asks for one when `number` is empty.
    void setupPopupDialer(EventContext* pContext, const std::string& prefix, const std::string& line1,
                          const std::string& number, bool withoutDialCommand);
    // Says that there is no number to dial.
    void setupNotifyPopup(EventContext* pContext);
    // Closes the dialler and shows again what was current before it.
    void dismissPopupDialer(EventContext* pContext);
    // Closes the dialler and both line popups, and restores nothing.
    void dismissDialingPopups(EventContext* pContext);

protected:
    // makeCSTACall() with the call-request flag kept around it: set while the call is under way.
    bool placeCall(EventContext* pContext, const std::string& number);
    // The user typed the first digits of a number: the dialler opens with them, and goes on from there.
    void openDialerWithDigits(EventContext* pContext, const std::string& digits);
    // Dialling ended: the next call may be placed, and the dialler goes.
    void dialingEnded(EventContext* pContext);
    // Fills in that this entry is called at this number; false without a number, and for a party that
    // already has another one.
    static bool offerParty(CallPartyIdentifier& party, const PhonebookFullEntry& entry,
                           const std::string& number, CallPartyIdentifier::PhoneNumberIconType icon);
    // The same for the number that the party has, else the entry's default number; false also for a number
    // that is not the entry's.
    static bool offerEntry(CallPartyIdentifier& party, const PhonebookFullEntry& entry);
    bool isRedialCommand(EventContext* pContext, const DisplayAPI::Command* pCommand) const;
    // One of the three popups of dialling.
    static bool isDialingPopup(EventContext* pContext, const DisplayAPI::Displayable* pDisplayable);

private:
    PhonebookStateBase* dialCommandChosen(EventContext* pContext);
    void editNumber(EventContext* pContext, const std::string& number);
    void showRefusal(EventContext* pContext, int cause, const std::string& number);
    void showLinePopup(EventContext* pContext, DisplayAPI::PopupNotification& popup);
    void rememberCurrentDisplayable(EventContext* pContext);
    void createDialCommand(EventContext* pContext);
    void createRedialCommand(EventContext* pContext);
    void removeDialCommand(EventContext* pContext);
    void addDialerCommands(EventContext* pContext);

    std::string m_callingDevice;
    std::string m_numberToDial;
    std::string m_setupNumber;
    std::string m_line1Prefix;
    std::string m_line1Text;
    bool m_lineSelectionPending = false;
    bool m_pleaseDialMode = false;
};
