// The phonebook at the corporate directory's tab, with a directory that finds what a test says.

#pragma once

#include <utility>

#include <framework/services/Utils.h>

#include "PhonebookScreens.h"

class DirectoryListScreens : public PhonebookScreens {
protected:
    using People = std::vector<AttributeList>;

    static constexpr auto TIMEOUT = "ldap-search-trigger-timeout";

    DirectoryListScreens() { configuration.items[TIMEOUT] = "3"; }

    void startOnItsTab(Bar bar = Bar::SoftKeys)
    {
        start(bar);
        goToTab();
    }
    void goToTab()
    {
        while (!mode().isLdapTabActive())
            nextTab();
    }
    void nextTab()
    {
        phonelet().tab();
        host.settle();
    }

    static AttributeList person(const std::string& surname, const std::string& firstname,
                                const AttributeList& attributes = {})
    {
        AttributeList all{{Utils::SURNAME, surname}, {Utils::FIRSTNAME, firstname}};
        all.insert(all.end(), attributes.begin(), attributes.end());
        return all;
    }
    // What the next searches find.
    void finds(People people, DirectoryStatus status = DIRECTORY_SUCCESS, bool byNickname = false)
    {
        people.push_back({{"trailer", byNickname ? "true" : "false"}});
        directory.found = std::move(people);
        directory.status = status;
    }
    // How the next searches end without rows.
    void endsWith(int status)
    {
        directory.found.clear();
        directory.status = static_cast<DirectoryStatus>(status);
    }
    // Miller, Milton and Minter, on the screen after "mi" was searched for.
    void threeFound()
    {
        finds({person("Milton", "Bob", {{Utils::MOBILE, "200"}}),
               person("Miller", "Amy", {{Utils::OFFICE, "100"}, {Utils::PRIVATE, "101"}}),
               person("Minter", "Zoe")});
        type("mi*");
        forget();
    }
    // Searches and log lines so far.
    void forget()
    {
        directory.searches.clear();
        log.clear();
    }

    // The searches, each as its pairs.
    Texts queries() const
    {
        static const std::vector<std::pair<std::string, std::string>> names{
            {Utils::SURNAME, "surname"}, {Utils::NICKNAME, "nickname"}, {Utils::FIRSTNAME, "firstname"}};
        Texts texts;
        for (const auto& search : directory.searches) {
            std::string text;
            for (const auto& [attribute, value] : search.attributes) {
                for (const auto& [known, name] : names) {
                    if (attribute == known)
                        text += (text.empty() ? "" : " ") + name + "=" + value;
                }
            }
            texts.push_back(text);
        }
        return texts;
    }
    // How the surname is searched for.
    static std::string surnameQuery(const std::string& surname)
    {
        return "surname=" + surname + " nickname=" + surname;
    }

    std::string field() const { return host.frame->base.search; }
    int selectedRow() { return widget().getSelectedIndex(); }
    std::string notification() const
    {
        return top().role == DisplayAPI::FrameRole::Notification ? top().text : "";
    }

    LDAPStateViewingList& state() { return context().m_LdapViewingList; }
    PhonebookStateBase* current() { return mode().getCurrentState(); }
    DisplayAPI::SearchList& widget() { return *context().m_pLdapDisplayList; }
    PhonebookList& results() { return *context().m_pLdapPhonebookList; }
    void reenter()
    {
        state().enterStateEvent(&context());
        host.settle();
    }

    // The one timer of the phonebook.
    int timerId() const { return telephone.timers.empty() ? 0 : telephone.timers.begin()->first; }
    const FakeContext::Timer& timer() const { return telephone.timers.at(timerId()); }
    void timerExpires() { timerExpires(timerId()); }
    void timerExpires(int id)
    {
        phonelet().timerEvent(id);
        host.settle();
    }
    // Typing rests: what the timer waits for.
    void quiet()
    {
        if (telephone.isTimerRunning(timerId()))
            timerExpires();
    }
};
