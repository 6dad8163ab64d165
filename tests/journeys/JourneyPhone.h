// A whole telephone with a profile of its own, on a clock that is moved by hand.

#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <testing/LogCapture.h>

#include "../phone/TemporaryFolder.h"
#include "../phone/directory/StoreTesting.h"
#include "Journey.h"
#include "JourneyPbx.h"
#include "app/Phone.h"
#include "calls/LineIfc.h"

class JourneyPhone {
public:
    using ReplaceService = std::function<Executable*(const std::string& name, Executable* service)>;

    explicit JourneyPhone(const Journey& journey, ReplaceService replace = {});
    ~JourneyPhone();

    // Does what the words say, one after the other, and gives the screen that they leave:
    //   keys                     as keysFromWord() has them
    //   wait:3000ms              time passes
    //   item:language=de         an administrator changes a configuration item
    //   outside:Zander,Zoe       another program adds a contact
    //   outside:delete-all       another program deletes all contacts
    //   outside:backup           another program backs everything up
    //   outside:restore          another program restores that
    //   outside:clear-calls      another program deletes the calls that were dialled
    //   outside:damage           another program writes rubbish over the contacts' file
    //   directory:down, :up      whether the company's directory answers
    //   ldap-password:secret     an administrator gives the telephone another password
    //   disk:full, disk:free     whether anything can be written into the contacts' file
    //   restart                  the telephone is switched off and on
    //   alerting, answered,      what becomes of the call that was placed last or came in last
    //   cleared, busy, declined, no-answer, no-such-number, unreachable
    //   rings:0301234,Anna       a call comes in
    //   line:down, :up           whether calls can be placed
    //   pbx:available, :unavailable, :off    what the PBX says of its phonebook,
    //   pbx:enabled, :disabled, :partiallyDisabled   of itself,
    //   pbx:row:2:Miller,_Anna   of a row of its display; "_" stands for a blank
    //   pbx:flood                of row 5, from 1 to 1000
    //   pbx:refuses, :accepts    whether its phonebook can be opened,
    //   pbx:vanishes             or can be, but is gone then,
    //   pbx:silent               or whether it does not even answer that
    //   pbx:alerting, :answered, :cleared, :busy   of the call that was placed over it,
    //   pbx:rings:0301234        or of one that comes in
    //   pbx:lost, :back          whether it is there
    std::string run(const std::string& words);

    std::string screen();
    // What is in the store: "Miller, Anna", by id.
    std::map<std::string, std::string> contacts() const;

    // What went wrong without being seen: exceptions, broken rules.
    std::vector<std::string> complaints() const;
    // Whether a message that something failed was to be seen at any time.
    bool failureSeen() const { return m_failureSeen; }

    Phone& phone() { return *m_phone; }
    ManualClock& clock() { return m_clock; }

private:
    class Line;

    void furnish();
    void start();
    void word(const std::string& word);
    void outside(const std::string& change);
    // False when it says no such thing.
    bool lineSays(const std::string& word);
    void setItem(const std::string& item, const std::string& value);
    void keepPassword(const std::string& password);
    void settle();
    std::filesystem::path store() const;

    const Journey m_journey;
    const ReplaceService m_replace;
    LogCapture m_log;
    TemporaryFolder m_folder;
    ManualClock m_clock;
    std::vector<std::string> m_calls; // placed since the last screen
    Line* m_pLine = nullptr;          // the telephone's
    std::vector<std::string> m_complaints;
    bool m_failureSeen = false;
    std::unique_ptr<FailingDisk> m_pFullDisk;
    bool m_companyIsDown = false;
    std::unique_ptr<JourneyPbx> m_pPbx;
    std::unique_ptr<Phone> m_phone;
};
