// One row of a phonebook list: enough to show, sort and dial a contact.

#pragma once

#include <string>

#include <framework/services/PhonebookSearchCriteria.h>

// How a name is written. Values outside are possible, as these are stored numbers; they show nothing.
enum class displayMode : int {
    SurnameFirstname = 0, // "Miller, Jane"
    FirstnameSurname = 1, // "Jane Miller"
    SurnameInitial = 2,   // "Miller, J"
    InitialSurname = 3,   // "J Miller"
};

// What is written in brackets behind the name of a directory row.
enum class displayQualifier : int {
    None = 0,
    JobFunction = 1,
    Address = 2,
    Email = 3,
    Office = 4,
    Mobile = 5,
    Office2 = 6,
    Private = 7,
    Company = 8,
    Address2 = 9,
};

class PhonebookListEntry {
public:
    // The names of the default numbers, as they are stored and sent.
    static constexpr char nOFFICE[] = "Office";
    static constexpr char nOFFICE2[] = "Office2";
    static constexpr char nMOBILE[] = "Mobile";
    static constexpr char nPRIVATE[] = "Private";
    static constexpr char nNONE[] = "None";

    PhonebookListEntry();
    // A local row from a line of the directory service's list. A line that does not have its four
    // fields gives an empty row.
    explicit PhonebookListEntry(const std::string& item);
    // A corporate directory row. It keeps the pointer, which is not null: the attributes outlive the row.
    explicit PhonebookListEntry(AttributeList* attributes);
    virtual ~PhonebookListEntry() = default;

    // The virtual destructor would take the moves away, and every sort would copy five strings a swap.
    PhonebookListEntry(const PhonebookListEntry&) = default;
    PhonebookListEntry& operator=(const PhonebookListEntry&) = default;
    PhonebookListEntry(PhonebookListEntry&&) = default;
    PhonebookListEntry& operator=(PhonebookListEntry&&) = default;

    // The directory service's key of the record; "" for a corporate directory row.
    const std::string& getUniqueId() const;
    const std::string& getFirstname() const;
    const std::string& getSurname() const;
    // Which number is dialled: one of the names above.
    const std::string& getDefaultNumber() const;
    // The attributes that a corporate directory row was made from; null for a local row.
    AttributeList* getFullRecordPointer() const;

    void setUniqueId(std::string uniqueId);
    void setDefaultNumber(std::string defaultNumber);
    // A local name is cut to 30 characters, one from the corporate directory is kept whole.
    void setFirstname(std::string firstname);
    void setSurname(std::string surname);
    // Says where the row came from; it governs later names only.
    void setLDAPPhonebookListEntry(bool ldap);

    // The text shown for the row, the qualifier of a corporate directory row included.
    std::string getDisplayName(displayMode mode, displayQualifier qualifier) const;

protected:
    // The number that is dialled by default for these attributes: the first that is not empty of
    // office, office 2, mobile and private.
    static const char* firstNumberOf(const AttributeList& attributes);

private:
    friend class PhonebookList; // sorts by m_sortKey, which is empty at all other times

    std::string m_uniqueId;
    std::string m_firstname;
    std::string m_surname;
    std::string m_defaultNumber;
    std::string m_sortKey;
    AttributeList* m_pFullRecord = nullptr;
    bool m_ldap = false;
};
