#include "FailingServices.h"

#include <framework/csta/CSTARequests.h>
#include <framework/csta/CSTAServiceIfc.h>
#include <framework/services/DigitAnalysisServiceIfc.h>
#include <framework/services/DirectoryServiceIfc.h>
#include <framework/services/LocalMgmtIfc.h>
#include <framework/services/PhonebookGroupList.h>

namespace {

class Directory final : public DirectoryServiceIfc {
public:
    Directory(FailingServices& failing, DirectoryServiceIfc& service)
        : m_failing(failing)
        , m_service(service)
    {
    }

    std::string request(const std::string& xml) override
    {
        const bool changes = xml.find("read_request") == xml.npos;
        if (!m_failing.fails()) {
            if (changes)
                m_failing.noteChange(xml);
            return m_service.request(xml);
        }
        if (changes)
            m_failing.noteChangeFailed();
        return "<Schema><ReasonForMessage>failure</ReasonForMessage><FailureMessage>The disk is gone"
               "</FailureMessage></Schema>";
    }
    std::string getList() override { return m_failing.fails() ? "empty" : m_service.getList(); }
    std::string getList(const std::string& tag) override
    {
        return m_failing.fails() ? "empty" : m_service.getList(tag);
    }
    DirectoryStatus search(PhonebookSearchCriteria& criteria, PhonebookSearchResults& results,
                           bool ignore) override
    {
        return m_failing.fails() ? DIRECTORY_CONNECTION_FAILURE : m_service.search(criteria, results, ignore);
    }
    bool isNicknameAttributeActive() override { return m_service.isNicknameAttributeActive(); }
    int readOption(const std::string& tag) override
    {
        return m_failing.fails() ? 0 : m_service.readOption(tag);
    }
    int writeOption(const std::string& tag, int value) override
    {
        return m_failing.fails() ? -1 : m_service.writeOption(tag, value);
    }
    PhonebookGroupList* getGroupList() override
    {
        return m_failing.fails() ? nullptr : m_service.getGroupList();
    }
    bool storeGroupList(PhonebookGroupList* groups) override
    {
        if (!m_failing.fails())
            return m_service.storeGroupList(groups);
        m_failing.noteChangeFailed();
        return false;
    }
    bool reassignGroup(unsigned group, unsigned to, int mode) override
    {
        // Not told when it fails: writing the group list leaves no member of a spare group behind.
        return !m_failing.fails() && m_service.reassignGroup(group, to, mode);
    }
    std::string getFieldSizes() override { return m_failing.fails() ? "" : m_service.getFieldSizes(); }
    void addObserver(DirectoryServiceObserverIfc* observer) override { m_service.addObserver(observer); }
    void removeObserver(DirectoryServiceObserverIfc* observer) override
    {
        m_service.removeObserver(observer);
    }

private:
    FailingServices& m_failing;
    DirectoryServiceIfc& m_service;
};

class Calls final : public CSTAServiceIfc {
public:
    Calls(FailingServices& failing, CSTAServiceIfc& service)
        : m_failing(failing)
        , m_service(service)
    {
    }

    void sendRequest(CSTARequest& request) override
    {
        if (m_failing.fails())
            request.setResponse(1, nullptr);
        else
            m_service.sendRequest(request);
    }

private:
    FailingServices& m_failing;
    CSTAServiceIfc& m_service;
};

class Digits final : public DigitAnalysisServiceIfc {
public:
    Digits(FailingServices& failing, DigitAnalysisServiceIfc& service)
        : m_failing(failing)
        , m_service(service)
    {
    }

    bool setCallContextProvider(DigitAnalysisServiceEventIfc* provider) override
    {
        return !m_failing.fails() && m_service.setCallContextProvider(provider);
    }
    // Not one to fail: who is gone must not stay registered.
    bool clearCallContextProvider(DigitAnalysisServiceEventIfc* provider) override
    {
        return m_service.clearCallContextProvider(provider);
    }
    bool setDialString(const std::string& digits, int complete) override
    {
        return !m_failing.fails() && m_service.setDialString(digits, complete);
    }
    void convertToCanonical(std::string& number) override
    {
        if (!m_failing.fails())
            m_service.convertToCanonical(number);
    }
    void setDialPartyDetails(CallPartyIdentifier& party, bool result, int mode) override
    {
        m_service.setDialPartyDetails(party, result, mode);
    }

private:
    FailingServices& m_failing;
    DigitAnalysisServiceIfc& m_service;
};

class Items final : public LocalMgmtIfc {
public:
    Items(FailingServices& failing, LocalMgmtIfc& service)
        : m_failing(failing)
        , m_service(service)
    {
    }

    bool read(ManageableData& data) override { return !m_failing.fails() && m_service.read(data); }
    void observeManageableData(const std::string& tag, MgmtAgentIfc* agent) override
    {
        m_service.observeManageableData(tag, agent);
    }
    std::vector<std::string> getPictureClips() override
    {
        return m_failing.fails() ? std::vector<std::string>() : m_service.getPictureClips();
    }
    std::string pictureNameFromPath(const std::string& path) override
    {
        return m_service.pictureNameFromPath(path);
    }
    std::string picturePathFromName(const std::string& name) override
    {
        return m_service.picturePathFromName(name);
    }

private:
    FailingServices& m_failing;
    LocalMgmtIfc& m_service;
};

template <typename Wrapper, typename Service>
std::unique_ptr<Executable> wrapped(FailingServices& failing, Executable* service)
{
    auto* typed = dynamic_cast<Service*>(service);
    return typed ? std::make_unique<Wrapper>(failing, *typed) : nullptr;
}

} // namespace

FailingServices::~FailingServices() = default;

Executable* FailingServices::wrap(const std::string& name, Executable* service)
{
    auto& known = m_wrapped[name];
    if (known.wrapper && known.service == service)
        return known.wrapper.get();
    auto wrapper = wrapped<Directory, DirectoryServiceIfc>(*this, service);
    if (!wrapper)
        wrapper = wrapped<Calls, CSTAServiceIfc>(*this, service);
    if (!wrapper)
        wrapper = wrapped<Digits, DigitAnalysisServiceIfc>(*this, service);
    if (!wrapper)
        wrapper = wrapped<Items, LocalMgmtIfc>(*this, service);
    known = {service, std::move(wrapper)};
    return known.wrapper ? known.wrapper.get() : service;
}

bool FailingServices::fails()
{
    return ++m_calls == m_which;
}
