// Stands between a phonelet and the telephone's services, and lets the k-th call of all fail as that
// service says that it may.

#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <framework/Executable.h>

class FailingServices {
public:
    // `which` counts from 1; 0 lets all calls pass.
    explicit FailingServices(int which)
        : m_which(which)
    {
    }
    ~FailingServices();

    // What the phonelet finds under `name`.
    Executable* wrap(const std::string& name, Executable* service);

    // Counts one call of a service; true when it is the one to fail.
    bool fails();
    int calls() const { return m_calls; }
    // Whether the call that failed was to change the contacts or their groups.
    bool changeFailed() const { return m_changeFailed; }
    void noteChangeFailed() { m_changeFailed = true; }
    // The requests to write or delete contacts that were let pass.
    const std::vector<std::string>& changes() const { return m_changes; }
    void noteChange(const std::string& xml) { m_changes.push_back(xml); }

private:
    const int m_which;
    int m_calls = 0;
    bool m_changeFailed = false;
    std::vector<std::string> m_changes;
    // A telephone that was switched off and on has other services under the same names.
    struct Wrapped {
        Executable* service = nullptr;
        std::unique_ptr<Executable> wrapper;
    };
    std::map<std::string, Wrapped> m_wrapped;
};
