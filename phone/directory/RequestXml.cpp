#include "RequestXml.h"

#include <array>
#include <memory>

#include <expat.h>

#include <framework/services/PhonebookGroup.h>
#include <framework/util/ClientUtils.h>

#include "ContactText.h"

namespace {

constexpr std::size_t nGREATEST_REQUEST = 1024 * 1024;
constexpr int nGREATEST_DEPTH = 3; // Schema, Entry, a field

constexpr char nPROLOGUE[] =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"PhoneBook\"><ReasonForMessage>";

struct Field {
    const char* element;
    std::string Contact::*text;
};

constexpr std::array nFIELDS = {
    Field{"Surname", &Contact::surname},         Field{"Firstname", &Contact::firstname},
    Field{"Office", &Contact::office},           Field{"Mobile", &Contact::mobile},
    Field{"Private", &Contact::privateNumber},   Field{"Email", &Contact::email},
    Field{"Company", &Contact::company},         Field{"Office2", &Contact::office2},
    Field{"Address", &Contact::address},         Field{"Address2", &Contact::address2},
    Field{"JobFunction", &Contact::jobFunction}, Field{"Picture", &Contact::picture},
    Field{"ExternalID", &Contact::externalId},   Field{"UniqueID", &Contact::id},
};

struct ParserDeleter {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using Parser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserDeleter>;

class RequestReader {
public:
    explicit RequestReader(XML_Parser parser)
        : m_parser(parser)
    {
        XML_SetUserData(parser, this);
        XML_SetElementHandler(parser, startElement, endElement);
        XML_SetCharacterDataHandler(parser, characterData);
        XML_SetStartDoctypeDeclHandler(parser, startDoctype);
    }

    Result<DirectoryRequest> read(const std::string& xml)
    {
        const auto status = XML_Parse(m_parser, xml.data(), static_cast<int>(xml.size()), XML_TRUE);
        if (m_refusal)
            return malformed(m_refusal);
        if (status != XML_STATUS_OK)
            return malformed(XML_ErrorString(XML_GetErrorCode(m_parser)));
        return complete();
    }

    static Error malformed(const std::string& why)
    {
        return {ErrorCode::Malformed, "Bad request: " + why + "."};
    }

private:
    static RequestReader& self(void* user) { return *static_cast<RequestReader*>(user); }

    static void XMLCALL startElement(void* user, const XML_Char* name, const XML_Char** attributes)
    {
        self(user).start(name, attributes);
    }
    static void XMLCALL endElement(void* user, const XML_Char* name) { self(user).end(name); }
    static void XMLCALL characterData(void* user, const XML_Char* text, int length)
    {
        self(user).m_text.append(text, static_cast<std::size_t>(length));
    }
    static void XMLCALL startDoctype(void* user, const XML_Char*, const XML_Char*, const XML_Char*, int)
    {
        self(user).refuse("a document type is not allowed");
    }

    void refuse(const char* why)
    {
        m_refusal = why;
        XML_StopParser(m_parser, XML_FALSE);
    }

    void start(std::string_view name, const XML_Char** attributes)
    {
        m_text.clear();
        ++m_depth;
        if (m_depth > nGREATEST_DEPTH)
            refuse("it is nested too deeply");
        else if (m_depth == 1 && !isPhonebook(name, attributes))
            refuse("it is not for the phonebook");
        else if (m_depth == 2 && name == "Entry" && ++m_entries > 1)
            refuse("it has a second entry");
        else if (m_depth == 2)
            m_inEntry = name == "Entry";
    }

    static bool isPhonebook(std::string_view name, const XML_Char** attributes)
    {
        if (name != "Schema")
            return false;
        for (; *attributes; attributes += 2) {
            if (std::string_view(attributes[0]) == "name")
                return std::string_view(attributes[1]) == "PhoneBook";
        }
        return false;
    }

    void end(std::string_view name)
    {
        if (m_depth == nGREATEST_DEPTH && m_inEntry)
            takeField(name);
        else if (m_depth == 2 && name == "ReasonForMessage")
            m_reason = m_text;
        m_text.clear();
        --m_depth;
    }

    void takeField(std::string_view name)
    {
        for (const auto& field : nFIELDS) {
            if (name == field.element)
                m_request.contact.*field.text = m_text;
        }
        if (name == "Group") {
            m_request.group = PhonebookGroup::groupTagToIndex(m_text);
            m_request.contact.group = *m_request.group;
        } else if (name == "DefaultNumber" && m_text.size() == 1 && m_text[0] >= '0' && m_text[0] <= '4') {
            m_request.contact.defaultNumber = static_cast<DefaultNumber>(m_text[0] - '0');
        }
    }

    Result<DirectoryRequest> complete()
    {
        if (m_reason == "read_request")
            m_request.kind = DirectoryRequest::Kind::Read;
        else if (m_reason == "write_request")
            m_request.kind = DirectoryRequest::Kind::Write;
        else if (m_reason == "delete_request")
            m_request.kind = DirectoryRequest::Kind::Delete;
        else
            return malformed("nobody knows the reason \"" + m_reason + "\"");
        const bool bare = m_request.contact.id.empty();
        if (!bare && !isContactId(m_request.contact.id))
            return malformed("no contact can have that id");
        if (bare && m_request.kind == DirectoryRequest::Kind::Read)
            return malformed("it does not say which contact to read");
        if (m_entries == 0 && m_request.kind == DirectoryRequest::Kind::Write)
            return malformed("it has nothing to write");
        // An entry that names neither a contact nor a group must not delete everything.
        if (bare && !m_request.group && m_entries > 0 && m_request.kind == DirectoryRequest::Kind::Delete)
            return malformed("it does not say what to delete");
        return m_request;
    }

    XML_Parser m_parser;
    const char* m_refusal = nullptr;
    int m_depth = 0;
    int m_entries = 0;
    bool m_inEntry = false;
    std::string m_text;
    std::string m_reason;
    DirectoryRequest m_request;
};

void appendElement(std::string& xml, std::string_view name, std::string_view content)
{
    xml.append("<").append(name).append(">").append(content).append("</").append(name).append(">");
}

std::string answer(std::string_view reason, std::string_view rest)
{
    std::string xml = nPROLOGUE;
    xml.append(reason).append("</ReasonForMessage>").append(rest).append("</Schema>");
    return xml;
}

} // namespace

Result<DirectoryRequest> parseDirectoryRequest(const std::string& xml)
{
    if (xml.size() > nGREATEST_REQUEST)
        return RequestReader::malformed("it is too long");
    const Parser parser(XML_ParserCreate("UTF-8"));
    if (!parser)
        return RequestReader::malformed("there is no memory to read it");
    return RequestReader(parser.get()).read(xml);
}

std::string readAnswer(const Contact& contact)
{
    std::string entry = "<Entry>";
    for (const auto& field : nFIELDS)
        appendElement(entry, field.element, ClientUtils::escapeXMLString(contact.*field.text));
    appendElement(entry, "Group", PhonebookGroup::groupIndexToTag(contact.group));
    appendElement(entry, "DefaultNumber", std::to_string(static_cast<int>(contact.defaultNumber)));
    return answer("read_response", entry + "</Entry>");
}

std::string writeAnswer(const std::string& id)
{
    std::string entry = "<Entry>";
    appendElement(entry, "UniqueID", id);
    return answer("write_response", entry + "</Entry>");
}

std::string deleteAnswer()
{
    return answer("delete_response", "");
}

std::string failureAnswer(const std::string& message)
{
    std::string element;
    appendElement(element, "FailureMessage", ClientUtils::escapeXMLString(message));
    return answer("failure", element);
}
