// A contact store in memory that understands the same requests as the telephone's own.
//
// Requests are kept as they came. `fail...` make the next requests fail.

#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <framework/services/DirectoryServiceIfc.h>
#include <framework/services/DirectoryServiceObserverIfc.h>
#include <framework/services/PhonebookGroupList.h>
#include <framework/services/PhonebookSearchCriteria.h>
#include <framework/services/PhonebookSearchResults.h>
#include <framework/util/ClientUtils.h>

class FakeDirectoryService final : public DirectoryServiceIfc {
public:
    // One contact, by the names of the XML elements.
    using Record = std::map<std::string, std::string>;

    std::map<std::string, Record> records; // by unique id, in the order of the ids
    std::vector<std::string> requests;
    std::optional<std::string> answer; // instead of the real one, to every request
    std::string failure;               // fails every request with this message while not empty
    std::optional<std::string> list;   // instead of the real list text
    std::vector<std::string> listCalls;
    std::function<void()> whileBusy; // called inside every request, list and write

    std::map<std::string, int> options;
    std::vector<std::pair<std::string, int>> optionWrites;
    int optionResult = 0;

    std::unique_ptr<PhonebookGroupList> groups = std::make_unique<PhonebookGroupList>();
    bool storesGroups = true;
    int groupReads = 0;
    int groupStores = 0;
    std::vector<unsigned> reassigned;
    int reassignMode = -1; // of the last one
    bool reassigns = true;
    unsigned stuckGroup = 0; // this one is not reassigned

    DirectoryStatus status = DIRECTORY_NO_MATCHES;
    std::vector<AttributeList> found; // with the trailer
    struct Search {
        AttributeList attributes;
        std::string base;
        int source;
        bool ignoreNickname;
    };
    std::vector<Search> searches;
    std::function<void()> whileSearching;
    bool nicknames = false;

    std::string fieldSizes = "lastname=30;firstname=30;business1=50;business2=50;mobile=50;private=50;"
                             "company=40;address1=40;address2=40;position=30;email=35;callgroup=30";
    int fieldSizeReads = 0;
    std::vector<DirectoryServiceObserverIfc*> observers;

    // Adds a contact and returns its id.
    std::string add(const std::string& surname, const std::string& firstname, const std::string& office = "",
                    const std::string& code = "", const std::string& group = "0")
    {
        const std::string id = nextId();
        records[id] = {{"Surname", surname},
                       {"Firstname", firstname},
                       {"Office", office},
                       {"DefaultNumber", !code.empty()    ? code
                                         : office.empty() ? "0"
                                                          : "1"},
                       {"Group", group}};
        return id;
    }

    std::string request(const std::string& xml) override
    {
        requests.push_back(xml);
        busy();
        if (answer)
            return *answer;
        if (!failure.empty())
            return document("failure",
                            "<FailureMessage>" + ClientUtils::escapeXMLString(failure) + "</FailureMessage>");
        const std::string reason = element(xml, "ReasonForMessage");
        if (reason == "read_request")
            return read(element(xml, "UniqueID"));
        if (reason == "write_request")
            return write(xml);
        if (reason == "delete_request")
            return remove(xml);
        return document("failure", "<FailureMessage>Not understood</FailureMessage>");
    }

    std::string getList() override
    {
        listCalls.push_back("all");
        busy();
        return list ? *list : listOf([](const Record&) { return true; });
    }
    std::string getList(const std::string& groupTag) override
    {
        listCalls.push_back(groupTag);
        busy();
        return list ? *list
                    : listOf([&](const Record& record) { return value(record, "Group") == groupTag; });
    }

    DirectoryStatus search(PhonebookSearchCriteria& criteria, PhonebookSearchResults& results,
                           bool ignoreNickname) override
    {
        searches.push_back({criteria.getAttributes(), criteria.getBase(),
                            static_cast<int>(criteria.getSource()), ignoreNickname});
        if (whileSearching)
            whileSearching();
        results.getRecords() = found;
        return status;
    }
    bool isNicknameAttributeActive() override { return nicknames; }

    int readOption(const std::string& tag) override { return options.contains(tag) ? options[tag] : 0; }
    int writeOption(const std::string& tag, int number) override
    {
        optionWrites.emplace_back(tag, number);
        busy();
        if (optionResult == 0)
            options[tag] = number;
        return optionResult;
    }

    PhonebookGroupList* getGroupList() override
    {
        ++groupReads;
        return groups ? new PhonebookGroupList(*groups) : nullptr;
    }
    bool storeGroupList(PhonebookGroupList* stored) override
    {
        ++groupStores;
        busy();
        if (storesGroups && stored)
            groups = std::make_unique<PhonebookGroupList>(*stored);
        return storesGroups;
    }
    bool reassignGroup(unsigned group, unsigned to, int mode) override
    {
        reassigned.push_back(group);
        reassignMode = mode;
        busy();
        const bool moves = reassigns && group != stuckGroup;
        for (auto& [id, record] : records)
            if (moves && value(record, "Group") == std::to_string(group))
                record["Group"] = std::to_string(to);
        return moves;
    }
    std::string getFieldSizes() override
    {
        ++fieldSizeReads;
        return fieldSizes;
    }

    void addObserver(DirectoryServiceObserverIfc* observer) override { observers.push_back(observer); }
    void removeObserver(DirectoryServiceObserverIfc* observer) override
    {
        observers.erase(std::remove(observers.begin(), observers.end(), observer), observers.end());
    }

    // The text of an element, unescaped; "" when it is not there.
    static std::string element(const std::string& xml, const std::string& name)
    {
        const auto open = xml.find("<" + name + ">");
        const auto close = xml.find("</" + name + ">");
        if (open == std::string::npos || close == std::string::npos)
            return "";
        const auto start = open + name.size() + 2;
        return unescaped(xml.substr(start, close - start));
    }

private:
    void busy() const
    {
        if (whileBusy)
            whileBusy();
    }

    static constexpr const char* nELEMENTS[] = {
        "Surname", "Firstname", "Office",  "Mobile",   "Private",     "Email",   "Group",     "DefaultNumber",
        "Company", "Office2",   "Address", "Address2", "JobFunction", "Picture", "ExternalID"};

    static std::string value(const Record& record, const std::string& name)
    {
        const auto field = record.find(name);
        return field == record.end() ? "" : field->second;
    }
    static std::string unescaped(std::string text)
    {
        static const std::pair<const char*, const char*> entities[] = {
            {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&apos;", "'"}, {"&amp;", "&"}};
        for (const auto& [entity, character] : entities)
            for (auto at = text.find(entity); at != std::string::npos; at = text.find(entity, at + 1))
                text.replace(at, std::string(entity).size(), character);
        return text;
    }
    static std::string document(const std::string& reason, const std::string& rest)
    {
        return "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"PhoneBook\"><ReasonForMessage>" +
               reason + "</ReasonForMessage>" + rest + "</Schema>";
    }
    std::string nextId() { return "id" + std::to_string(1000 + ++m_ids); }

    std::string read(const std::string& id)
    {
        if (!records.contains(id))
            return document("failure", "<FailureMessage>No such entry</FailureMessage>");
        std::string fields;
        for (const char* name : nELEMENTS)
            fields += "<" + std::string(name) + ">" + ClientUtils::escapeXMLString(value(records[id], name)) +
                      "</" + name + ">";
        return document("read_response", "<Entry><UniqueID>" + id + "</UniqueID>" + fields + "</Entry>");
    }
    std::string write(const std::string& xml)
    {
        std::string id = element(xml, "UniqueID");
        if (id.empty())
            id = nextId();
        Record record;
        for (const char* name : nELEMENTS)
            record[name] = element(xml, name);
        records[id] = record;
        return document("write_response", "<Entry><UniqueID>" + id + "</UniqueID></Entry>");
    }
    std::string remove(const std::string& xml)
    {
        const std::string id = element(xml, "UniqueID");
        if (!id.empty()) {
            if (records.erase(id) == 0)
                return document("failure", "<FailureMessage>No such entry</FailureMessage>");
            return document("delete_response", "");
        }
        const bool ofOneGroup = xml.find("<Group>") != std::string::npos;
        const std::string tag = element(xml, "Group");
        std::erase_if(records,
                      [&](const auto& entry) { return !ofOneGroup || value(entry.second, "Group") == tag; });
        return document("delete_response", "");
    }
    template <typename Wanted> std::string listOf(Wanted wanted)
    {
        std::string text;
        for (const auto& [id, record] : records)
            if (wanted(record))
                text += (text.empty() ? "" : "\n") + id + "\t" + value(record, "Surname") + "\t" +
                        value(record, "Firstname") + "\t" + value(record, "DefaultNumber");
        return text.empty() ? "empty" : text;
    }

    int m_ids = 0;
};
