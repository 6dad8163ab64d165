// Looks up the telephone's services, once and by name, and hands them out.
//
// A service that the telephone does not offer, or offers under another type, is null.
// None of them is owned.

#pragma once

class CSTAServiceIfc;
class DataAccessServiceIfc;
class DigitAnalysisServiceIfc;
class DirectoryServiceIfc;
class JournalServiceIfc;
class LocalMgmtIfc;
class OBEXServiceIfc;
class PhoneletContext;
class PhysicalInterfaceServiceIfc;
class TeamServiceIfc;

class PhonebookControl {
public:
    // Without a context there are no services.
    explicit PhonebookControl(PhoneletContext* pContext);
    virtual ~PhonebookControl();

    PhonebookControl(const PhonebookControl&) = delete;
    PhonebookControl& operator=(const PhonebookControl&) = delete;

    DirectoryServiceIfc* getDirectoryService() const;
    CSTAServiceIfc* getCSTAService() const;
    DigitAnalysisServiceIfc* getDigitAnalysisService() const;
    LocalMgmtIfc* getLocalManagementService() const;
    DataAccessServiceIfc* getDataAccessService() const;
    TeamServiceIfc* getTeamService() const;
    JournalServiceIfc* getJournalService() const;
    OBEXServiceIfc* getOBEXService() const;
    PhysicalInterfaceServiceIfc* getPhysicalInterfaceService() const;

private:
    DirectoryServiceIfc* m_pDirectory = nullptr;
    CSTAServiceIfc* m_pCsta = nullptr;
    DigitAnalysisServiceIfc* m_pDigitAnalysis = nullptr;
    DataAccessServiceIfc* m_pDataAccess = nullptr;
    TeamServiceIfc* m_pTeam = nullptr;
    LocalMgmtIfc* m_pLocalMgmt = nullptr;
    JournalServiceIfc* m_pJournal = nullptr;
    OBEXServiceIfc* m_pObex = nullptr;
    PhysicalInterfaceServiceIfc* m_pPhysicalInterface = nullptr;
};
