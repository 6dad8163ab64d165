// Every service of the telephone, and the names under which phonelets find them.

#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <framework/Executable.h>

#include "app/Clock.h"
#include "app/EventPoster.h"
#include "app/EventTimers.h"
#include "app/PhoneletStates.h"
#include "app/Profile.h"
#include "app/Result.h"
#include "calls/CallService.h"
#include "calls/DigitAnalysis.h"
#include "calls/Journal.h"
#include "calls/pbx/Pbx.h"
#include "calls/sip/SipSettings.h"
#include "directory/DirectoryService.h"
#include "system/Configuration.h"
#include "system/LocalMgmtService.h"
#include "system/ObexService.h"
#include "system/PassedOnServices.h"
#include "system/PhysicalInterfaceService.h"

class Services {
public:
    struct Parts {
        const Configuration& configuration;
        const Profile& profile;
        const Clock& clock;
        EventPoster& events;
        EventTimers& timers;
        EventPoster& updates; // for changes that others made
        PhoneletStates& states;
        // Whether the contacts' file is looked at all the time, or by lookForChanges() only.
        bool watch = true;
        // A placed call was connected, failed or was cleared, or the user hung up.
        std::function<void()> dialingStopped;
        CallWatcherIfc& callBar;
    };

    static Result<std::unique_ptr<Services>> open(Parts parts);

    // Null for a name that stands for no service.
    Executable* find(const std::string& name);

    // An item has a new value.
    // [event thread]
    void itemChanged(const std::string& name);
    // While `urgent` no service keeps the event thread waiting.
    // [any-thread]
    void setUrgent(bool urgent);
    // Ends all waiting, for ever: the telephone stops.
    // [any-thread]
    void stopWaiting();
    void setLanguage(const std::string& language) { m_directory->setLanguage(language); }

    // The phonelets were stopped: what they left subscribed is dropped.
    // [event thread]
    void dropObservers();

    // Calls are placed on it from now on.
    // [event thread]
    void addLine(std::unique_ptr<LineIfc> line);
    // Whether there is a line that calls can be placed on now.
    // [event thread]
    bool hasLine() const;
    // Why there is none, as far as is known.
    // [event thread]
    LineTrouble lineTrouble() const;

    CallService& calls() { return m_calls; }
    DigitAnalysis& digits() { return m_digits; }
    DirectoryService& directory() { return *m_directory; }
    Journal& journal() { return *m_journal; }
    LocalMgmtService& localMgmt() { return m_localMgmt; }
    ObexService& sending() { return m_obex; }
    PhysicalInterfaceService& physicalInterface() { return m_physicalInterface; }

private:
    Services(Parts parts, std::unique_ptr<DirectoryService> directory, std::unique_ptr<Journal> journal);

    CallHooks callHooks();
    // Gives the name of who has the number.
    std::string placed(const std::string& number);
    std::string nameDialledBefore(const std::string& number) const;
    void identify(CallRecord& call); // [any-thread]
    std::vector<std::string> namesOf(const CallRecord& call);
    void removeLine(const LineIfc*& line);
    // An administrator's value of an item that the option store keeps too goes there.
    void copyToOptionStore(const std::string& item);
    void hurryPbx(bool urgent);
    void setCorporateDirectory();
    void setSending();
    // The line that the configuration names, in the place of the one before; after the last call.
    void setSipLine();
    void setLinesLater();
    // The same with the PBX.
    void setPbx();

    const Parts m_parts;
    std::unique_ptr<DirectoryService> m_directory;
    std::unique_ptr<Journal> m_journal;
    DigitAnalysis m_digits;
    CallService m_calls;
    std::mutex m_pbxMutex;               // for m_pbx itself, outside the event thread
    std::unique_ptr<Pbx> m_pbx;          // null when there is none; its line is the call service's
    std::vector<const LineIfc*> m_lines; // the call service owns them
    const LineIfc* m_pPbxLine = nullptr; // among them, as the next one; null for none
    const LineIfc* m_pSipLine = nullptr;
    std::optional<SipSettings> m_sipLine; // what the SIP line works with
    bool m_linesWait = false;             // other settings, for the end of a call
    bool m_sipLineFaulty = false;         // what the configuration says of it is wrong
    bool m_pbxLineFaulty = false;
    LocalMgmtService m_localMgmt;
    PhysicalInterfaceService m_physicalInterface;
    DataAccessService m_dataAccess;
    TeamService m_team;
    ObexService m_obex;
    // Tells an event that is queued that the services are gone.
    std::shared_ptr<const char> m_alive = std::make_shared<const char>();
};
