// A whole contact: what is shown, edited, written to the directory service and compared.
//
// Two marks say that a contact comes from the corporate directory, where no field has a limit: the
// row's own governs the names, this class's governs everything else. Setting one leaves the other.

#pragma once

#include <string>
#include <vector>

#include <framework/services/CallPartyIdentifier.h>

#include "PhonebookListEntry.h"

class PhonebookFullEntry : public PhonebookListEntry {
public:
    PhonebookFullEntry();

    const std::string& getOffice() const;
    const std::string& getMobile() const;
    const std::string& getPrivate() const;
    const std::string& getEmail() const;
    const std::string& getGroup() const;
    const std::string& getCompany() const;
    const std::string& getOffice2() const;
    const std::string& getAddress() const;
    const std::string& getAddress2() const;
    const std::string& getJobFunction() const;
    const std::string& getPicture() const;
    const std::string& getExternalId() const;

    // Cut to the field's limit in characters: numbers 50, e-mail 35, company and addresses 40,
    // job function 30; not cut for a contact marked by setLDAPPhonebookFullEntry().
    void setOffice(std::string office);
    void setMobile(std::string mobile);
    void setPrivate(std::string number);
    void setEmail(std::string email);
    void setCompany(std::string company);
    void setOffice2(std::string office2);
    void setAddress(std::string address);
    void setAddress2(std::string address2);
    void setJobFunction(std::string jobFunction);
    // Cut to 91 bytes, for every contact.
    void setPicture(std::string picture);
    void setGroup(std::string group);
    void setExternalId(std::string externalId);

    // The group as its index: 0 for none.
    int getGroupIndex() const;
    void setGroupIndex(int index);

    void setLDAPPhonebookFullEntry(bool ldap);

    // Empties the record: group "0", default number "None". The external id stays.
    void setBlank();

    // Fills the record from fields in the order surname, first name, office, mobile, private, e-mail,
    // group, default number, company, office 2, address, address 2, job function, picture, external
    // id. Throws std::out_of_range at the first that is missing, with those before it set. The unique
    // id stays.
    void setAll(const std::vector<std::string>& fields);
    // Fills the record from the attributes of a corporate directory row; what they lack is
    // blank. Not null.
    void setAll(const AttributeList* attributes);

    // The number that the default number names; "" when it names none.
    std::string getDefaultPhonebookNo() const;
    CallPartyIdentifier::PhoneNumberIconType getDefaultIcon() const;

    // 1 (PB_Error::NAME) for a record without surname and first name: nothing to save; else 0.
    int validateEntry() const;

    // The external id and the two marks do not count.
    bool operator==(const PhonebookFullEntry& other) const;

private:
    std::string m_office;
    std::string m_mobile;
    std::string m_private;
    std::string m_email;
    std::string m_group;
    std::string m_company;
    std::string m_office2;
    std::string m_address;
    std::string m_address2;
    std::string m_jobFunction;
    std::string m_picture;
    std::string m_externalId;
    bool m_ldapFull = false;
};
