// A password that the telephone shows a server, in a file of its own in the profile that only its
// owner may read (mode 0600).
//
// The file remembers for which hosts the password is. When the settings name any other host it is
// deleted, so that a changed name never gets a password that was meant for somebody else. The
// password itself is never logged, shown or put into a message.

#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "app/Result.h"

class PasswordFile {
public:
    // How the password is spoken of.
    struct Words {
        std::string purpose; // "the directory"
        std::string item;    // "ldap-servers", which names the hosts
        std::string command; // "ldap-password", which keeps one; the file's name too
    };

    PasswordFile(const std::filesystem::path& profile, Words words);

    // The password, if the file is its owner's alone and was written for all of `hosts`; otherwise a
    // sentence that says what to do. NotFound: there is none. Reads the file each time, so that a new
    // password counts at once.
    // [any-thread]
    Result<std::string> read(const std::vector<std::string>& hosts) const;

    // Keeps `password`, for `hosts` only. One that is empty, longer than 256 bytes or has
    // control characters is refused. Whole or not at all.
    // [any-thread]
    Result<void> write(const std::string& password, const std::vector<std::string>& hosts) const;

    // Deletes the file if it was not written for all of `hosts`, and says so in the log.
    // [any-thread]
    void forgetUnlessFor(const std::vector<std::string>& hosts) const;

    const std::filesystem::path& file() const { return m_file; }
    const Words& words() const { return m_words; }

private:
    std::string how() const { return " Run \"deskphone " + m_words.command + "\"."; }

    std::filesystem::path m_file;
    Words m_words;
};
