#include "PhonebookListEntry.h"

#include <utility>
#include <vector>

#include <framework/services/Utils.h>
#include <framework/util/Utf8Utils.h>

#include "PhonebookFullEntry.h"
#include "PhonebookLog.h"
#include "PhonebookProtocolAdaptor.h"
#include "Toolbox.h"

namespace {

constexpr char nSOURCE[] = "./src/PhonebookListEntry";
constexpr unsigned int nMAX_NAME_CHARACTERS = 30;

std::string qualifierText(const PhonebookFullEntry& entry, displayQualifier qualifier)
{
    switch (qualifier) {
    case displayQualifier::None:
        return "";
    case displayQualifier::JobFunction:
        return entry.getJobFunction();
    case displayQualifier::Address:
        return entry.getAddress();
    case displayQualifier::Email:
        return entry.getEmail();
    case displayQualifier::Office:
        return entry.getOffice();
    case displayQualifier::Mobile:
        return entry.getMobile();
    case displayQualifier::Office2:
        return entry.getOffice2();
    case displayQualifier::Private:
        return entry.getPrivate();
    case displayQualifier::Company:
        return entry.getCompany();
    case displayQualifier::Address2:
        return entry.getAddress2();
    }
    return "";
}

std::string joinedName(const std::string& firstname, const std::string& surname, displayMode mode)
{
    switch (mode) {
    case displayMode::SurnameFirstname:
        return surname + ", " + firstname;
    case displayMode::FirstnameSurname:
        return firstname + " " + surname;
    case displayMode::SurnameInitial:
        return surname + ", " + Utf8Utils::getFirstUnicodeChar(firstname);
    case displayMode::InitialSurname:
        return Utf8Utils::getFirstUnicodeChar(firstname) + " " + surname;
    }
    return "";
}

bool isMode(displayMode mode)
{
    return mode >= displayMode::SurnameFirstname && mode <= displayMode::InitialSurname;
}

} // namespace

PhonebookListEntry::PhonebookListEntry()
{
    PB_TRACE("PhonebookListEntry::PhonebookListEntry()");
}

PhonebookListEntry::PhonebookListEntry(const std::string& item)
{
    PB_TRACE("PhonebookListEntry::PhonebookListEntry()");
    std::vector<std::string> fields;
    if (PhonebookProtocolAdaptor::getEntryData(&item, fields) != 1)
        return;
    m_uniqueId = std::move(fields[0]);
    setSurname(std::move(fields[1]));
    setFirstname(std::move(fields[2]));
    m_defaultNumber = std::move(fields[3]);
}

PhonebookListEntry::PhonebookListEntry(AttributeList* attributes)
    : m_pFullRecord(attributes)
    , m_ldap(true)
{
    PB_TRACE("PhonebookListEntry::PhonebookListEntry()");
    for (const auto& [name, value] : *attributes) {
        if (name == Utils::SURNAME)
            setSurname(value);
        else if (name == Utils::FIRSTNAME)
            setFirstname(value);
    }
    m_defaultNumber = firstNumberOf(*attributes);
}

const char* PhonebookListEntry::firstNumberOf(const AttributeList& attributes)
{
    PB_TRACE("PhonebookListEntry::firstNumberOf()");
    const std::pair<const std::string&, const char*> numbers[] = {{Utils::OFFICE, nOFFICE},
                                                                  {Utils::OFFICE2, nOFFICE2},
                                                                  {Utils::MOBILE, nMOBILE},
                                                                  {Utils::PRIVATE, nPRIVATE}};
    for (const auto& [attribute, number] : numbers)
        for (const auto& [name, value] : attributes)
            if (name == attribute && !value.empty())
                return number;
    return nNONE;
}

const std::string& PhonebookListEntry::getUniqueId() const
{
    PB_TRACE("PhonebookListEntry::getUniqueId()");
    return m_uniqueId;
}

const std::string& PhonebookListEntry::getFirstname() const
{
    PB_TRACE("PhonebookListEntry::getFirstname()");
    return m_firstname;
}

const std::string& PhonebookListEntry::getSurname() const
{
    PB_TRACE("PhonebookListEntry::getSurname()");
    return m_surname;
}

const std::string& PhonebookListEntry::getDefaultNumber() const
{
    PB_TRACE("PhonebookListEntry::getDefaultNumber()");
    return m_defaultNumber;
}

AttributeList* PhonebookListEntry::getFullRecordPointer() const
{
    PB_TRACE("PhonebookListEntry::getFullRecordPointer()");
    return m_pFullRecord;
}

void PhonebookListEntry::setUniqueId(std::string uniqueId)
{
    PB_TRACE("PhonebookListEntry::setUniqueId()");
    m_uniqueId = std::move(uniqueId);
}

void PhonebookListEntry::setDefaultNumber(std::string defaultNumber)
{
    PB_TRACE("PhonebookListEntry::setDefaultNumber()");
    m_defaultNumber = std::move(defaultNumber);
}

void PhonebookListEntry::setFirstname(std::string firstname)
{
    PB_TRACE("PhonebookListEntry::setFirstname()");
    m_firstname = m_ldap ? std::move(firstname)
                         : Toolbox::truncateStringsProperly(std::move(firstname), nMAX_NAME_CHARACTERS);
}

void PhonebookListEntry::setSurname(std::string surname)
{
    PB_TRACE("PhonebookListEntry::setSurname()");
    m_surname = m_ldap ? std::move(surname)
                       : Toolbox::truncateStringsProperly(std::move(surname), nMAX_NAME_CHARACTERS);
}

void PhonebookListEntry::setLDAPPhonebookListEntry(bool ldap)
{
    PB_TRACE("PhonebookListEntry::setLDAPPhonebookListEntry()");
    m_ldap = ldap;
}

std::string PhonebookListEntry::getDisplayName(displayMode mode, displayQualifier qualifier) const
{
    PB_TRACE("PhonebookListEntry::getDisplayName()");
    std::string name;
    if (isMode(mode)) {
        if (m_firstname.empty())
            name = m_surname;
        else if (m_surname.empty())
            name = m_firstname;
        else
            name = joinedName(m_firstname, m_surname, mode);
    }
    if (qualifier == displayQualifier::None || !m_pFullRecord)
        return name;

    PhonebookFullEntry entry;
    entry.setAll(m_pFullRecord);
    const std::string text = qualifierText(entry, qualifier);
    return text.empty() ? name : name + " (" + text + ")";
}
