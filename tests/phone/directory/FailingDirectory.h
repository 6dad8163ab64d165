// A directory service that passes everything on to another one, but for its n-th request: that fails
// as a disk or a server would make it fail. For replaying a journey with each request failing in turn.

#pragma once

#include <framework/services/DirectoryServiceIfc.h>

class FailingDirectory final : public DirectoryServiceIfc {
public:
    // `nth` counts from 1; 0 fails nothing.
    FailingDirectory(DirectoryServiceIfc& directory, int nth)
        : m_directory(directory)
        , m_left(nth)
    {
    }

    // Whether the request that was to fail was made at all.
    bool hasFailed() const { return m_failed; }

    std::string request(const std::string& xml) override
    {
        static const std::string failure =
            "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"PhoneBook\">"
            "<ReasonForMessage>failure</ReasonForMessage>"
            "<FailureMessage>Not enough memory</FailureMessage></Schema>";
        return fails() ? failure : m_directory.request(xml);
    }
    std::string getList() override { return fails() ? "" : m_directory.getList(); }
    std::string getList(const std::string& groupTag) override
    {
        return fails() ? "" : m_directory.getList(groupTag);
    }
    DirectoryStatus search(PhonebookSearchCriteria& criteria, PhonebookSearchResults& results,
                           bool ignoreNickname) override
    {
        return fails() ? DIRECTORY_CONNECTION_FAILURE : m_directory.search(criteria, results, ignoreNickname);
    }
    bool isNicknameAttributeActive() override { return m_directory.isNicknameAttributeActive(); }
    int readOption(const std::string& tag) override { return fails() ? 0 : m_directory.readOption(tag); }
    int writeOption(const std::string& tag, int value) override
    {
        return fails() ? 1 : m_directory.writeOption(tag, value);
    }
    PhonebookGroupList* getGroupList() override { return fails() ? nullptr : m_directory.getGroupList(); }
    bool storeGroupList(PhonebookGroupList* groups) override
    {
        return !fails() && m_directory.storeGroupList(groups);
    }
    bool reassignGroup(unsigned group, unsigned to, int mode) override
    {
        return !fails() && m_directory.reassignGroup(group, to, mode);
    }
    std::string getFieldSizes() override { return fails() ? "" : m_directory.getFieldSizes(); }
    void addObserver(DirectoryServiceObserverIfc* observer) override { m_directory.addObserver(observer); }
    void removeObserver(DirectoryServiceObserverIfc* observer) override
    {
        m_directory.removeObserver(observer);
    }

private:
    bool fails()
    {
        if (m_left == 0 || --m_left > 0)
            return false;
        m_failed = true;
        return true;
    }

    DirectoryServiceIfc& m_directory;
    int m_left;
    bool m_failed = false;
};
