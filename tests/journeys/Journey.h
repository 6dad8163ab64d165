// A way through the whole telephone, written down in a text file: keys in, screens out.
//
//     # What this journey is about.
//     software-type: Veltrix SIP          any configuration item
//     absent: CSTAServiceIfc              services that the telephone does not have
//     line: 4711                          a line that answers
//     pbx: available                      a PBX with a phonebook, or with one that is "unavailable"
//     group: Friends                      a group that nobody need be in
//     picture: anna.png                   a clip that a contact may have
//     contact: Miller, Anna; office=030 123; mobile=0170 1; group=Friends; default=mobile
//     ldap-servers: company               the corporate directory of company.ldif
//     ldap-password: secret               what the telephone shows it with "ldap-bind-dn"
//
//     >>> phonebook down menu
//     [Contacts]| Directory |
//       New contact
//     ...
//
// After ">>>" stand the words of keysFromWord() and of Journey::run(); below it what is to be seen
// then, up to the next empty line, with a line "* ..." for each call that was placed meanwhile, and for what
// was asked of the PBX.

#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

struct JourneyStep {
    std::string words;
    std::string screen;
};

struct Journey {
    std::string head; // as it stands in the file
    std::map<std::string, std::string> items;
    std::vector<std::string> absent;
    std::string line;
    std::string pbx; // the availability of its phonebook; "" for no PBX
    std::string ldapPassword;
    std::vector<std::string> groups;
    std::vector<std::string> pictures;
    std::vector<std::string> contacts;
    std::vector<JourneyStep> steps;

    static Journey read(const std::filesystem::path& file);
    // The file's text, with what was seen as its screens.
    std::string text() const;
};

// Every journey's file, by name.
std::vector<std::filesystem::path> allJourneys();
