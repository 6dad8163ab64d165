// What tests of the corporate directory's client begin with.

#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <framework/services/Utils.h>
#include <testing/LogCapture.h>

#include "Slapd.h"
#include "TemporaryFolder.h"
#include "directory/ldap/LdapClient.h"
#include "system/Configuration.h"

// A telephone's profile whose configuration can be written, and a client that is set up with it.
class CorporateDirectory : public testing::Test {
protected:
    using Strings = std::vector<std::string>;
    using Items = std::map<std::string, std::string>;

    // Items win over those that every test has.
    void configure(const Items& items)
    {
        Configuration::Values values = common();
        for (const auto& [item, value] : items)
            values[item] = value;
        const Configuration configuration(profile / "config.toml", values);
        for (const auto& [item, value] : values)
            EXPECT_EQ(configuration.text(item), value) << "refused";
        setup = ldapSettingsOf(configuration, profile.path());
        client.setUp(setup);
    }

    // What every test has.
    virtual Items common() const { return {}; }

    DirectoryStatus search(const AttributeList& criteria, bool ignoreNickname = false)
    {
        PhonebookSearchResults results;
        PhonebookSearchCriteria asked(criteria, base, true);
        const auto status = client.search(asked, results, ignoreNickname);
        records = results.getRecords();
        trailer.clear();
        if (!records.empty()) {
            trailer = records.back().front().second;
            records.pop_back();
        }
        return status;
    }
    DirectoryStatus searchSurname(const std::string& surname) { return search({{Utils::SURNAME, surname}}); }

    // The found ones' values of a field, sorted.
    Strings found(const std::string& field = Utils::SURNAME) const
    {
        Strings values;
        for (const auto& record : records)
            for (const auto& [name, value] : record)
                if (name == field)
                    values.push_back(value);
        std::sort(values.begin(), values.end());
        return values;
    }

    // Whether an error with this in it was logged.
    bool said(const std::string& part) const
    {
        for (const auto& text : log.texts(AppLog::ERROR))
            if (text.find(part) != std::string::npos)
                return true;
        return false;
    }
    std::string errors() const
    {
        std::string all;
        for (const auto& text : log.texts(AppLog::ERROR))
            all += text + "\n";
        return all;
    }

    TemporaryFolder profile;
    LogCapture log;
    LdapSetup setup;
    LdapClient client;
    std::string base; // of the next searches; "": the configured one
    std::vector<AttributeList> records;
    std::string trailer;
};
