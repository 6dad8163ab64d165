#include "PhonebookFullEntry.h"

#include <algorithm>
#include <utility>

#include <framework/services/PhonebookGroup.h>
#include <framework/services/Utils.h>

#include "PB_Error.h"
#include "PhonebookLog.h"
#include "Toolbox.h"

namespace {

constexpr char nSOURCE[] = "./src/PhonebookFullEntry";

// What the fields of a local record hold, in characters; the picture in bytes.
constexpr unsigned int nMAX_NUMBER = 50;
constexpr unsigned int nMAX_EMAIL = 35;
constexpr unsigned int nMAX_COMPANY = 40;
constexpr unsigned int nMAX_ADDRESS = 40;
constexpr unsigned int nMAX_JOB_FUNCTION = 30;
constexpr std::size_t nMAX_PICTURE_BYTES = 91;

constexpr char nNO_GROUP[] = "0";

std::string limited(bool unlimited, std::string value, unsigned int characters)
{
    return unlimited ? value : Toolbox::truncateStringsProperly(std::move(value), characters);
}

} // namespace

PhonebookFullEntry::PhonebookFullEntry()
{
    PB_TRACE("PhonebookFullEntry::PhonebookFullEntry()");
}

const std::string& PhonebookFullEntry::getOffice() const
{
    PB_TRACE("PhonebookFullEntry::getOffice()");
    return m_office;
}

const std::string& PhonebookFullEntry::getMobile() const
{
    PB_TRACE("PhonebookFullEntry::getMobile()");
    return m_mobile;
}

const std::string& PhonebookFullEntry::getPrivate() const
{
    PB_TRACE("PhonebookFullEntry::getPrivate()");
    return m_private;
}

const std::string& PhonebookFullEntry::getEmail() const
{
    PB_TRACE("PhonebookFullEntry::getEmail()");
    return m_email;
}

const std::string& PhonebookFullEntry::getGroup() const
{
    PB_TRACE("PhonebookFullEntry::getGroup()");
    return m_group;
}

const std::string& PhonebookFullEntry::getCompany() const
{
    PB_TRACE("PhonebookFullEntry::getCompany()");
    return m_company;
}

const std::string& PhonebookFullEntry::getOffice2() const
{
    PB_TRACE("PhonebookFullEntry::getOffice2()");
    return m_office2;
}

const std::string& PhonebookFullEntry::getAddress() const
{
    PB_TRACE("PhonebookFullEntry::getAddress()");
    return m_address;
}

const std::string& PhonebookFullEntry::getAddress2() const
{
    PB_TRACE("PhonebookFullEntry::getAddress2()");
    return m_address2;
}

const std::string& PhonebookFullEntry::getJobFunction() const
{
    PB_TRACE("PhonebookFullEntry::getJobFunction()");
    return m_jobFunction;
}

const std::string& PhonebookFullEntry::getPicture() const
{
    PB_TRACE("PhonebookFullEntry::getPicture()");
    return m_picture;
}

const std::string& PhonebookFullEntry::getExternalId() const
{
    PB_TRACE("PhonebookFullEntry::getExternalId()");
    return m_externalId;
}

void PhonebookFullEntry::setOffice(std::string office)
{
    PB_TRACE("PhonebookFullEntry::setOffice()");
    m_office = limited(m_ldapFull, std::move(office), nMAX_NUMBER);
}

void PhonebookFullEntry::setMobile(std::string mobile)
{
    PB_TRACE("PhonebookFullEntry::setMobile()");
    m_mobile = limited(m_ldapFull, std::move(mobile), nMAX_NUMBER);
}

void PhonebookFullEntry::setPrivate(std::string number)
{
    PB_TRACE("PhonebookFullEntry::setPrivate()");
    m_private = limited(m_ldapFull, std::move(number), nMAX_NUMBER);
}

void PhonebookFullEntry::setEmail(std::string email)
{
    PB_TRACE("PhonebookFullEntry::setEmail()");
    m_email = limited(m_ldapFull, std::move(email), nMAX_EMAIL);
}

void PhonebookFullEntry::setCompany(std::string company)
{
    PB_TRACE("PhonebookFullEntry::setCompany()");
    m_company = limited(m_ldapFull, std::move(company), nMAX_COMPANY);
}

void PhonebookFullEntry::setOffice2(std::string office2)
{
    PB_TRACE("PhonebookFullEntry::setOffice2()");
    m_office2 = limited(m_ldapFull, std::move(office2), nMAX_NUMBER);
}

void PhonebookFullEntry::setAddress(std::string address)
{
    PB_TRACE("PhonebookFullEntry::setAddress()");
    m_address = limited(m_ldapFull, std::move(address), nMAX_ADDRESS);
}

void PhonebookFullEntry::setAddress2(std::string address2)
{
    PB_TRACE("PhonebookFullEntry::setAddress2()");
    m_address2 = limited(m_ldapFull, std::move(address2), nMAX_ADDRESS);
}

void PhonebookFullEntry::setJobFunction(std::string jobFunction)
{
    PB_TRACE("PhonebookFullEntry::setJobFunction()");
    m_jobFunction = limited(m_ldapFull, std::move(jobFunction), nMAX_JOB_FUNCTION);
}

void PhonebookFullEntry::setPicture(std::string picture)
{
    PB_TRACE("PhonebookFullEntry::setPicture()");
    picture.resize(std::min(picture.size(), nMAX_PICTURE_BYTES));
    m_picture = std::move(picture);
}

void PhonebookFullEntry::setGroup(std::string group)
{
    PB_TRACE("PhonebookFullEntry::setGroup()");
    m_group = std::move(group);
}

void PhonebookFullEntry::setExternalId(std::string externalId)
{
    PB_TRACE("PhonebookFullEntry::setExternalId()");
    m_externalId = std::move(externalId);
}

int PhonebookFullEntry::getGroupIndex() const
{
    PB_TRACE("PhonebookFullEntry::getGroupIndex()");
    return PhonebookGroup::groupTagToIndex(m_group);
}

void PhonebookFullEntry::setGroupIndex(int index)
{
    PB_TRACE("PhonebookFullEntry::setGroupIndex()");
    m_group = PhonebookGroup::groupIndexToTag(index);
}

void PhonebookFullEntry::setLDAPPhonebookFullEntry(bool ldap)
{
    PB_TRACE("PhonebookFullEntry::setLDAPPhonebookFullEntry()");
    m_ldapFull = ldap;
}

void PhonebookFullEntry::setBlank()
{
    PB_TRACE("PhonebookFullEntry::setBlank()");
    setUniqueId("");
    setSurname("");
    setFirstname("");
    setOffice("");
    setMobile("");
    setPrivate("");
    setEmail("");
    setGroup(nNO_GROUP);
    setDefaultNumber(nNONE);
    setCompany("");
    setOffice2("");
    setAddress("");
    setAddress2("");
    setJobFunction("");
    setPicture("");
}

void PhonebookFullEntry::setAll(const std::vector<std::string>& fields)
{
    PB_TRACE("PhonebookFullEntry::setAll()");
    setSurname(fields.at(0));
    setFirstname(fields.at(1));
    setOffice(fields.at(2));
    setMobile(fields.at(3));
    setPrivate(fields.at(4));
    setEmail(fields.at(5));
    setGroup(fields.at(6));
    setDefaultNumber(fields.at(7));
    setCompany(fields.at(8));
    setOffice2(fields.at(9));
    setAddress(fields.at(10));
    setAddress2(fields.at(11));
    setJobFunction(fields.at(12));
    setPicture(fields.at(13));
    setExternalId(fields.at(14));
}

void PhonebookFullEntry::setAll(const AttributeList* attributes)
{
    PB_TRACE("PhonebookFullEntry::setAll()");
    setBlank();
    for (const auto& [name, value] : *attributes) {
        if (name == Utils::SURNAME)
            setSurname(value);
        else if (name == Utils::FIRSTNAME)
            setFirstname(value);
        else if (name == Utils::OFFICE)
            setOffice(value);
        else if (name == Utils::OFFICE2)
            setOffice2(value);
        else if (name == Utils::MOBILE)
            setMobile(value);
        else if (name == Utils::PRIVATE)
            setPrivate(value);
        else if (name == Utils::EMAIL)
            setEmail(value);
        else if (name == Utils::COMPANY)
            setCompany(value);
        else if (name == Utils::JOBFUNCTION)
            setJobFunction(value);
        else if (name == Utils::ADDRESS1)
            setAddress(value);
        else if (name == Utils::ADDRESS2)
            setAddress2(value);
    }
    setDefaultNumber(firstNumberOf(*attributes));
}

std::string PhonebookFullEntry::getDefaultPhonebookNo() const
{
    PB_TRACE("PhonebookFullEntry::getDefaultPhonebookNo()");
    const std::string& number = getDefaultNumber();
    if (number == nOFFICE)
        return m_office;
    if (number == nOFFICE2)
        return m_office2;
    if (number == nMOBILE)
        return m_mobile;
    if (number == nPRIVATE)
        return m_private;
    return "";
}

CallPartyIdentifier::PhoneNumberIconType PhonebookFullEntry::getDefaultIcon() const
{
    PB_TRACE("PhonebookFullEntry::getDefaultIcon()");
    const std::string& number = getDefaultNumber();
    if (number == nOFFICE)
        return CallPartyIdentifier::OFFICE;
    if (number == nOFFICE2)
        return CallPartyIdentifier::OFFICE2;
    if (number == nMOBILE)
        return CallPartyIdentifier::MOBILE;
    if (number == nPRIVATE)
        return CallPartyIdentifier::PRIVATE;
    return CallPartyIdentifier::NONE;
}

int PhonebookFullEntry::validateEntry() const
{
    PB_TRACE("PhonebookFullEntry::validateEntry()");
    return getSurname().empty() && getFirstname().empty() ? PB_Error::NAME : PB_Error::SUCCESS;
}

bool PhonebookFullEntry::operator==(const PhonebookFullEntry& other) const
{
    PB_TRACE("PhonebookFullEntry::operator==()");
    return getUniqueId() == other.getUniqueId() && getSurname() == other.getSurname() &&
           getFirstname() == other.getFirstname() && m_office == other.m_office &&
           m_mobile == other.m_mobile && m_private == other.m_private && m_email == other.m_email &&
           m_group == other.m_group && getDefaultNumber() == other.getDefaultNumber() &&
           m_company == other.m_company && m_office2 == other.m_office2 && m_address == other.m_address &&
           m_address2 == other.m_address2 && m_jobFunction == other.m_jobFunction &&
           m_picture == other.m_picture;
}
