#include "PhonebookControl.h"

#include <framework/PhoneletContext.h>
#include <framework/csta/CSTAServiceIfc.h>
#include <framework/services/DataAccessServiceIfc.h>
#include <framework/services/DigitAnalysisServiceIfc.h>
#include <framework/services/DirectoryServiceIfc.h>
#include <framework/services/JournalServiceIfc.h>
#include <framework/services/LocalMgmtIfc.h>
#include <framework/services/OBEXServiceIfc.h>
#include <framework/services/PhysicalInterfaceServiceIfc.h>
#include <framework/services/TeamServiceIfc.h>

#include "PhonebookLog.h"

namespace {

constexpr char nSOURCE[] = "./src/PhonebookControl";

template <typename Service> void lookUp(PhoneletContext& context, const char* name, Service*& pService)
{
    pService = dynamic_cast<Service*>(context.getService(name));
}

} // namespace

PhonebookControl::PhonebookControl(PhoneletContext* pContext)
{
    PB_TRACE("PhonebookControl::PhonebookControl()");
    if (!pContext)
        return;
    lookUp(*pContext, "DirectoryServiceIfc", m_pDirectory);
    lookUp(*pContext, "CSTAServiceIfc", m_pCsta);
    lookUp(*pContext, "DigitAnalysisServiceIfc", m_pDigitAnalysis);
    lookUp(*pContext, "LocalMgmtIfc", m_pLocalMgmt);
    lookUp(*pContext, "DataAccessServiceIfc", m_pDataAccess);
    lookUp(*pContext, "TeamServiceIfc", m_pTeam);
    lookUp(*pContext, "JournalServiceIfc", m_pJournal);
    lookUp(*pContext, "OBEXServiceIfc", m_pObex);
    lookUp(*pContext, "PhysicalInterfaceServiceIfc", m_pPhysicalInterface);
}

PhonebookControl::~PhonebookControl()
{
    PB_TRACE("PhonebookControl::~PhonebookControl()");
}

DirectoryServiceIfc* PhonebookControl::getDirectoryService() const
{
    PB_TRACE("PhonebookControl::getDirectoryService()");
    return m_pDirectory;
}

CSTAServiceIfc* PhonebookControl::getCSTAService() const
{
    PB_TRACE("PhonebookControl::getCSTAService()");
    return m_pCsta;
}

DigitAnalysisServiceIfc* PhonebookControl::getDigitAnalysisService() const
{
    PB_TRACE("PhonebookControl::getDigitAnalysisService()");
    return m_pDigitAnalysis;
}

LocalMgmtIfc* PhonebookControl::getLocalManagementService() const
{
    PB_TRACE("PhonebookControl::getLocalManagementService()");
    return m_pLocalMgmt;
}

DataAccessServiceIfc* PhonebookControl::getDataAccessService() const
{
    // Log readers match this text, its other name included.
    PB_TRACE("PhonebookControl::getDASService()");
    return m_pDataAccess;
}

TeamServiceIfc* PhonebookControl::getTeamService() const
{
    PB_TRACE("PhonebookControl::getTeamService()");
    return m_pTeam;
}

JournalServiceIfc* PhonebookControl::getJournalService() const
{
    PB_TRACE("PhonebookControl::getJournalService()");
    return m_pJournal;
}

OBEXServiceIfc* PhonebookControl::getOBEXService() const
{
    PB_TRACE("PhonebookControl::getOBEXService()");
    return m_pObex;
}

PhysicalInterfaceServiceIfc* PhonebookControl::getPhysicalInterfaceService() const
{
    PB_TRACE("PhonebookControl::getPhysicalInterfaceService()");
    return m_pPhysicalInterface;
}
