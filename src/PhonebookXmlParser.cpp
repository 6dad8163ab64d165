#include "PhonebookXmlParser.h"

#include <algorithm>
#include <memory>
#include <type_traits>

#include <expat.h>

#include "PhonebookLog.h"

namespace {

constexpr char nSOURCE[] = "./src/PhonebookXmlParser";

constexpr char nPHONEBOOK_SCHEMA[] = "PhoneBook";
constexpr char nREAD_RESPONSE[] = "read_response";
constexpr char nWRITE_RESPONSE[] = "write_response";
constexpr char nDELETE_RESPONSE[] = "delete_response";
constexpr char nFAILURE[] = "failure";

struct ParserFree {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using ParserPtr = std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserFree>;

} // namespace

void XMLstartElement_(void* parser, const char* name, const char** attributes)
{
    static_cast<PhonebookXmlParser*>(parser)->xmlStartElement(name, attributes);
}

void XMLendElement_(void* parser, const char* name)
{
    static_cast<PhonebookXmlParser*>(parser)->xmlEndElement(name);
}

void XMLCharacterDataHandler_(void* parser, const char* text, int length)
{
    static_cast<PhonebookXmlParser*>(parser)->xmlCharacterDataHandler(text, length);
}

PhonebookXmlParser::PhonebookXmlParser()
{
    PB_TRACE("PhonebookXmlParser::PhonebookXmlParser()");
}

PhonebookXmlParser::PhonebookXmlParser(char* data, int length)
{
    PB_TRACE("PhonebookXmlParser::PhonebookXmlParser()");
    parseXml(data, length);
}

void PhonebookXmlParser::parseXml(char* data, int length)
{
    PB_TRACE("PhonebookXmlParser::parseXml()");
    if (!checkDocumentForm(data, length))
        return;
    m_wellFormed = true;

    const ParserPtr parser(XML_ParserCreate(nullptr));
    if (!parser)
        return;
    XML_SetUserData(parser.get(), this);
    XML_SetElementHandler(parser.get(), XMLstartElement_, XMLendElement_);
    XML_SetCharacterDataHandler(parser.get(), XMLCharacterDataHandler_);
    XML_Parse(parser.get(), data, length, XML_TRUE);
}

bool PhonebookXmlParser::checkDocumentForm(const char* data, int length)
{
    PB_TRACE("PhonebookXmlParser::checkDocumentForm()");
    const ParserPtr parser(XML_ParserCreate(nullptr));
    return parser && data && length != 0 && XML_Parse(parser.get(), data, length, XML_TRUE) == XML_STATUS_OK;
}

bool PhonebookXmlParser::queryStatus() const
{
    PB_TRACE("PhonebookXmlParser::queryStatus()");
    return m_reason != nFAILURE && m_schemaName == nPHONEBOOK_SCHEMA;
}

int PhonebookXmlParser::responseType() const
{
    PB_TRACE("PhonebookXmlParser::responseType()");
    if (m_reason == nREAD_RESPONSE)
        return READ_RESPONSE;
    if (m_reason == nWRITE_RESPONSE)
        return WRITE_RESPONSE;
    if (m_reason == nDELETE_RESPONSE)
        return DELETE_RESPONSE;
    return NO_RESPONSE;
}

bool PhonebookXmlParser::result() const
{
    PB_TRACE("PhonebookXmlParser::result()");
    return m_wellFormed;
}

std::string PhonebookXmlParser::getFailureMessage() const
{
    PB_TRACE("PhonebookXmlParser::getFailureMessage()");
    return m_failureMessage;
}

std::string PhonebookXmlParser::getSurname() const
{
    PB_TRACE("PhonebookXmlParser::getSurname()");
    return m_surname;
}

std::string PhonebookXmlParser::getFirstname() const
{
    PB_TRACE("PhonebookXmlParser::getFirstname()");
    return m_firstname;
}

std::string PhonebookXmlParser::getOffice() const
{
    PB_TRACE("PhonebookXmlParser::getOffice()");
    return m_office;
}

std::string PhonebookXmlParser::getMobile() const
{
    PB_TRACE("PhonebookXmlParser::getMobile()");
    return m_mobile;
}

std::string PhonebookXmlParser::getPrivate() const
{
    PB_TRACE("PhonebookXmlParser::getPrivate()");
    return m_private;
}

std::string PhonebookXmlParser::getEmail() const
{
    PB_TRACE("PhonebookXmlParser::getEmail()");
    return m_email;
}

std::string PhonebookXmlParser::getGroup() const
{
    PB_TRACE("PhonebookXmlParser::getGroup()");
    return m_group;
}

std::string PhonebookXmlParser::getDefaultNumber() const
{
    PB_TRACE("PhonebookXmlParser::getDefaultNumber()");
    return m_defaultNumber;
}

std::string PhonebookXmlParser::getCompany() const
{
    PB_TRACE("PhonebookXmlParser::getCompany()");
    return m_company;
}

std::string PhonebookXmlParser::getOffice2() const
{
    PB_TRACE("PhonebookXmlParser::getOffice2()");
    return m_office2;
}

std::string PhonebookXmlParser::getAddress() const
{
    PB_TRACE("PhonebookXmlParser::getAddress()");
    return m_address;
}

std::string PhonebookXmlParser::getAddress2() const
{
    PB_TRACE("PhonebookXmlParser::getAddress2()");
    return m_address2;
}

std::string PhonebookXmlParser::getJobFunction() const
{
    PB_TRACE("PhonebookXmlParser::getJobFunction()");
    return m_jobFunction;
}

std::string PhonebookXmlParser::getPicture() const
{
    PB_TRACE("PhonebookXmlParser::getPicture()");
    return m_picture;
}

std::string PhonebookXmlParser::getUniqueId() const
{
    PB_TRACE("PhonebookXmlParser::getUniqueId()");
    return m_uniqueId;
}

std::string PhonebookXmlParser::getExternalId() const
{
    PB_TRACE("PhonebookXmlParser::getExternalId()");
    return m_externalId;
}

PhonebookXmlParser::Field PhonebookXmlParser::fieldOf(const std::string& element)
{
    PB_TRACE("PhonebookXmlParser::fieldOf()");
    struct Element {
        const char* name;
        Field field;
    };
    static constexpr Element elements[] = {
        {"ReasonForMessage", &PhonebookXmlParser::m_reason},
        {"FailureMessage", &PhonebookXmlParser::m_failureMessage},
        {"Surname", &PhonebookXmlParser::m_surname},
        {"Firstname", &PhonebookXmlParser::m_firstname},
        {"Office", &PhonebookXmlParser::m_office},
        {"Mobile", &PhonebookXmlParser::m_mobile},
        {"Private", &PhonebookXmlParser::m_private},
        {"Email", &PhonebookXmlParser::m_email},
        {"Group", &PhonebookXmlParser::m_group},
        {"DefaultNumber", &PhonebookXmlParser::m_defaultNumber},
        {"Company", &PhonebookXmlParser::m_company},
        {"Office2", &PhonebookXmlParser::m_office2},
        {"Address", &PhonebookXmlParser::m_address},
        {"Address2", &PhonebookXmlParser::m_address2},
        {"JobFunction", &PhonebookXmlParser::m_jobFunction},
        {"Picture", &PhonebookXmlParser::m_picture},
        {"UniqueID", &PhonebookXmlParser::m_uniqueId},
        {"ExternalID", &PhonebookXmlParser::m_externalId},
    };
    const auto* found = std::find_if(std::begin(elements), std::end(elements),
                                     [&element](const Element& known) { return element == known.name; });
    return found == std::end(elements) ? nullptr : found->field;
}

void PhonebookXmlParser::xmlStartElement(const char* name, const char** attributes)
{
    PB_TRACE("PhonebookXmlParser::xmlStartElement()");
    m_text.clear();
    const std::string element = name;
    if (element == "Schema") {
        if (attributes[0] && std::string("name") == attributes[0])
            m_schemaName = attributes[1];
        return;
    }
    if (const Field field = fieldOf(element))
        m_currentElement = field;
}

void PhonebookXmlParser::xmlEndElement(const char*)
{
    PB_TRACE("PhonebookXmlParser::xmlEndElement()");
    if (m_currentElement)
        this->*m_currentElement = m_text;
}

void PhonebookXmlParser::xmlCharacterDataHandler(const char* text, int length)
{
    PB_TRACE("PhonebookXmlParser::xmlCharacterDataHandler()");
    m_text.append(text, static_cast<std::size_t>(length));
}
