// The phonebook as the telephone sees it: its life-cycle, and the one place where the
// telephone's events come in. What matters goes on to the PhonebookMode.

#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

#include <framework/Phonelet.h>
#include <framework/csta/CSTAEventIfc.h>
#include <framework/display/Listeners.h>
#include <framework/services/DigitAnalysisServiceEventIfc.h>
#include <framework/services/DirectoryServiceObserverIfc.h>
#include <framework/services/JournalServiceObserverIfc.h>
#include <framework/services/MgmtAgentIfc.h>
#include <framework/services/physicalEventObserver.h>
#include <framework/util/Semaphore.h>

namespace DisplayAPI {
class Display;
}
class CSTAServiceIfc;
class DirectoryServiceIfc;
class LocalMgmtIfc;
class PhonebookControl;
class PhonebookGroupList;
class PhonebookList;
class PhonebookMode;
class PhysicalInterfaceServiceIfc;

// What the library exports. The caller owns the phonelet.
extern "C" Phonelet* createPhonelet();

class PhonebookPhonelet : public Phonelet,
                          public CSTAEventIfc,
                          public DigitAnalysisServiceEventIfc,
                          public DisplayAPI::ItemStateListener,
                          public DirectoryServiceObserverIfc,
                          public JournalServiceObserverIfc,
                          public MgmtAgentIfc,
                          public physicalEventObserver {
public:
    // Under which the telephone keeps its state, and under which it leaves the screen.
    static constexpr char nSTATE_NAME[] = "PhoneBookPhonelet";

    PhonebookPhonelet();
    ~PhonebookPhonelet() override;

    // The order of the virtual operations is part of the contract with the telephone.
    void init(PhoneletContext* pContext) override;
    void shutdown() override;
    void timerEvent(int id) override;
    std::string getInterfaces() override;
    void startPhonelet() override;
    void stopPhonelet() override;
    void hide() override;
    void show() override;
    void tab() override;
    void pause() override;
    void resume() override;
    void localeChanged(const std::string& language) override;
    void dateFormatChanged() override;
    void timeFormatChanged() override;
    void childGainedFocus(const std::string& child) override;
    void childLostFocus(const std::string& child) override;

    void deliverEvent(CSTAEvent* pEvent) override;

    void handleInterDigitTimeout(InterDigitTimeOutEvent* pEvent) override;
    void handleInitialDigitTimeout(InterDigitTimeOutEvent* pEvent) override;
    bool isDiallingOk() override;
    void handleDialingStarted(const std::string& digits) override;
    void handleDialingStarted(const std::string& digits, CallPartyIdentifier party) override;
    void handleDialingStopped() override;
    bool getDialPartyDetails(CallPartyIdentifier& party) override;
    void getEventHandlerName(std::string& name) override;

    void phonebookDatabaseUpdated(bool restart) override;

    void missedCallsCountUpdate(int count) override;
    void missedCallsUpdate(JournalItem* pItem, int id, JournalAction action) override;
    void dialledCallsUpdate(JournalItem* pItem, int id, JournalAction action) override;
    void receivedCallsUpdate(JournalItem* pItem, int id, JournalAction action) override;
    void forwardedCallsUpdate(JournalItem* pItem, int id, JournalAction action) override;
    void callBacksUpdate(JournalItem* pItem, int id, JournalAction action) override;
    void callBacksCountUpdate(int count) override;

    void buttonPressedEvent(PhysDefs::keyFunctionType function, int key, PhysDefs::actionType action,
                            std::string name) override;
    void hookswitchEvent(bool offHook) override;
    void jackEvent(int jack, bool plugged) override;
    Executable* getSubscribingService() override;

    // Of the popup dialler only: the other screens report to the mode.
    void itemStateChanged(DisplayAPI::Item* pItem) override;

    void manageableDataChanged(ManageableData* pData) override;
    int setData(ManageableData* pData) override;
    int getData(ManageableData* pData) override;
    void resetUserData() override;

    // Opens and closes the monitor through which the PBX speaks to the phonebook.
    bool subscribeForCSTAEvents();
    bool unsubscribeCSTAEvents();

    // While a child phonelet has the focus, the next show() steps to the next tab instead.
    bool getTreatShowAsTab() const;
    void clearTreatShowAsTab();

    bool isVisible() const;
    void requestFocus();
    void releaseFocus();

    // Not the caller's; null before start and after shutdown.
    PhonebookControl* getPhonebookControl() const;
    PhonebookList* getPhonebookList() const;
    PhonebookList* getListPointer() const;
    PhonebookMode* getPhonebookMode() const;

    int getCopiedContactGroupIndex() const;
    std::string getCopiedContactGroupName() const;
    bool isCopiedContactGroup(unsigned groupId);

private:
    bool readLanguageAndSoftwareType(LocalMgmtIfc* pLocalMgmt);
    std::unique_ptr<PhonebookGroupList> loadGroupList(DirectoryServiceIfc* pDirectory);
    void ensureCopiedContactGroup(DirectoryServiceIfc* pDirectory, PhonebookGroupList& groups);
    void observeJournal();
    void observeMobility(LocalMgmtIfc* pLocalMgmt);
    void observeLdapOptions(LocalMgmtIfc* pLocalMgmt);
    void subscribeKeys(PhysicalInterfaceServiceIfc* pPhysicalInterface);
    bool startMonitor(CSTAServiceIfc& csta);
    bool requestSystemStatus(CSTAServiceIfc& csta);
    bool stopMonitor(CSTAServiceIfc& csta);
    void setLatestLanguage(const std::string& language);
    std::string latestLanguage();

    std::string m_currentLanguage = "en";
    std::unique_ptr<PhonebookControl> m_pControl;
    std::unique_ptr<PhonebookList> m_pList;
    DisplayAPI::Display* m_pDisplay = nullptr;
    std::unique_ptr<PhonebookMode> m_pMode;
    std::atomic<bool> m_visible{false};
    std::atomic<bool> m_treatShowAsTab{false};
    std::string m_monitorCrossRefId;
    std::string m_copiedContactGroupName;
    int m_copiedContactGroupIndex = 0;
    Semaphore m_focusLock{1};
    Semaphore m_localeLock{1};
    std::string m_latestLanguage;
    // Written before m_localeLock is taken, so that a waiting call sees that a newer one came.
    std::mutex m_latestLanguageMutex;
};
