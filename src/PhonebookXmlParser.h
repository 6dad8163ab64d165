// Reads one XML answer of the directory service: its status and the values of one record.
//
// It keeps no tree. Text is copied at every end tag into the element that was opened last, so white
// space before a parent's end tag becomes part of that element's value, and of a repeated element
// the last value stays.

#pragma once

#include <string>

class PhonebookXmlParser {
public:
    enum ResponseType : int { NO_RESPONSE = 0, READ_RESPONSE = 1, WRITE_RESPONSE = 2, DELETE_RESPONSE = 3 };

    PhonebookXmlParser();
    // Parses at once.
    PhonebookXmlParser(char* data, int length);

    // A document that is not well-formed, or no document, leaves everything as it was.
    void parseXml(char* data, int length);

    // Whether the directory service did what was asked.
    bool queryStatus() const;
    // Which request is answered.
    int responseType() const;
    // Whether a well-formed document was parsed.
    bool result() const;

    std::string getFailureMessage() const;
    std::string getSurname() const;
    std::string getFirstname() const;
    std::string getOffice() const;
    std::string getMobile() const;
    std::string getPrivate() const;
    std::string getEmail() const;
    std::string getGroup() const;
    std::string getDefaultNumber() const;
    std::string getCompany() const;
    std::string getOffice2() const;
    std::string getAddress() const;
    std::string getAddress2() const;
    std::string getJobFunction() const;
    std::string getPicture() const;
    std::string getUniqueId() const;
    std::string getExternalId() const;

    // What expat reports. `attributes`: name, value, name, value, ..., null.
    void xmlStartElement(const char* name, const char** attributes);
    void xmlEndElement(const char* name);
    void xmlCharacterDataHandler(const char* text, int length);

private:
    using Field = std::string PhonebookXmlParser::*;

    static Field fieldOf(const std::string& element); // null: not recognised
    static bool checkDocumentForm(const char* data, int length);

    Field m_currentElement = nullptr; // the field of the element that was opened last
    std::string m_text;
    std::string m_reason;
    std::string m_failureMessage;
    std::string m_schemaName;
    std::string m_surname;
    std::string m_firstname;
    std::string m_office;
    std::string m_mobile;
    std::string m_private;
    std::string m_email;
    std::string m_group;
    std::string m_defaultNumber;
    std::string m_company;
    std::string m_office2;
    std::string m_address;
    std::string m_address2;
    std::string m_jobFunction;
    std::string m_picture;
    std::string m_uniqueId;
    std::string m_externalId;
    bool m_wellFormed = false;
};

// expat's view of a PhonebookXmlParser, which is the user data.
void XMLstartElement_(void* parser, const char* name, const char** attributes);
void XMLendElement_(void* parser, const char* name);
void XMLCharacterDataHandler_(void* parser, const char* text, int length);
