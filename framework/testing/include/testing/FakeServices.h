// The small services: each keeps what it was given.

#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <framework/services/DataAccessServiceIfc.h>
#include <framework/services/JournalServiceIfc.h>
#include <framework/services/OBEXServiceIfc.h>
#include <framework/services/PhysicalInterfaceServiceIfc.h>
#include <framework/services/TeamServiceIfc.h>

class FakeJournal final : public JournalServiceIfc {
public:
    std::vector<JournalServiceObserverIfc*> observers;

    void addObserver(JournalServiceObserverIfc* observer) override { observers.push_back(observer); }
    void removeObserver(JournalServiceObserverIfc* observer) override { std::erase(observers, observer); }
};

class FakePhysicalInterface final : public PhysicalInterfaceServiceIfc {
public:
    bool accepts = true;
    std::vector<std::pair<physicalEventObserver*, std::vector<PhysDefs::SubscriptionGrp>>> subscriptions;

    bool subscribe(physicalEventObserver* observer,
                   const std::vector<PhysDefs::SubscriptionGrp>& groups) override
    {
        subscriptions.emplace_back(observer, groups);
        return accepts;
    }
};

class FakeObex final : public OBEXServiceIfc {
public:
    std::vector<std::pair<std::string, std::string>> contacts; // name, vCard

    bool sendContact(const std::string& name, const std::string& vCard) override
    {
        contacts.emplace_back(name, vCard);
        return true;
    }
};

class FakeDataAccess final : public DataAccessServiceIfc {};
class FakeTeam final : public TeamServiceIfc {};
