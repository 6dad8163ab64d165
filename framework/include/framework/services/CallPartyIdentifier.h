// Who is called: what the telephone shows about the other end of a call.

#pragma once

#include <string>

#include <framework/Export.h>

class FRAMEWORK_API CallPartyIdentifier {
public:
    // Call-party icons. Another numbering than that of list rows.
    enum PhoneNumberIconType : int { NONE = 0, PRIVATE = 1, OFFICE = 2, OFFICE2 = 3, MOBILE = 4 };

    CallPartyIdentifier();
    ~CallPartyIdentifier();

    const std::string& getFirstname() const { return m_firstname; }
    void setFirstname(const std::string& firstname) { m_firstname = firstname; }
    const std::string& getSurname() const { return m_surname; }
    void setSurname(const std::string& surname) { m_surname = surname; }
    const std::string& getNumber() const { return m_number; }
    void setNumber(const std::string& number) { m_number = number; }
    // Name of a picture clip, or "".
    const std::string& getPicture() const { return m_picture; }
    void setPicture(const std::string& picture) { m_picture = picture; }
    PhoneNumberIconType getIcon() const { return m_icon; }
    void setIcon(PhoneNumberIconType icon) { m_icon = icon; }

private:
    std::string m_firstname;
    std::string m_surname;
    std::string m_number;
    std::string m_picture;
    PhoneNumberIconType m_icon = NONE;
};
