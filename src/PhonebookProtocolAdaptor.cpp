#include "PhonebookProtocolAdaptor.h"

#include <algorithm>

#include <framework/services/DirectoryServiceIfc.h>
#include <framework/services/PhonebookGroup.h>
#include <framework/util/ClientUtils.h>

#include "PB_Error.h"
#include "PhonebookListEntry.h"
#include "PhonebookLog.h"
#include "PhonebookXmlParser.h"

namespace {

constexpr char nSOURCE[] = "./src/PhonebookProtocolAdaptor";

constexpr char nREQUEST_BEGIN[] =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"PhoneBook\"><ReasonForMessage>";
constexpr char nREASON_END[] = "</ReasonForMessage>";
constexpr char nREQUEST_END[] = "</Schema>";

constexpr char nEMPTY_LIST[] = "empty";
constexpr char nOUT_OF_SPACE[] = "Not enough memory";
constexpr int nALL_GROUPS = -1;
constexpr std::size_t nLEAST_ITEMS = 10;
constexpr std::size_t nITEM_FIELDS = 4;
constexpr std::size_t nDEFAULT_NUMBER_FIELD = 3;

std::string element(const char* name, const std::string& content)
{
    std::string text;
    text.append("<").append(name).append(">").append(content).append("</").append(name).append(">");
    return text;
}

std::string escapedElement(const char* name, const std::string& content)
{
    return element(name, ClientUtils::escapeXMLString(content));
}

std::string document(const char* reason, const std::string& entry)
{
    return nREQUEST_BEGIN + std::string(reason) + nREASON_END + entry + nREQUEST_END;
}

// Without a directory service the answer is empty, which is a failure.
PhonebookXmlParser answerTo(DirectoryServiceIfc* directory, const std::string& request)
{
    std::string answer = directory ? directory->request(request) : "";
    return {answer.data(), static_cast<int>(answer.size())};
}

bool succeeded(const PhonebookXmlParser& answer, PhonebookXmlParser::ResponseType expected)
{
    return answer.queryStatus() && answer.responseType() == expected;
}

std::string defaultNumberCode(const std::string& name)
{
    if (name == PhonebookListEntry::nOFFICE)
        return "1";
    if (name == PhonebookListEntry::nOFFICE2)
        return "2";
    if (name == PhonebookListEntry::nMOBILE)
        return "3";
    if (name == PhonebookListEntry::nPRIVATE)
        return "4";
    return "0";
}

void appendPieces(const std::string& text, char separator, std::vector<std::string>& pieces)
{
    std::size_t begin = 0;
    for (auto end = text.find(separator); end != std::string::npos; end = text.find(separator, begin)) {
        pieces.emplace_back(text, begin, end - begin);
        begin = end + 1;
    }
    pieces.emplace_back(text, begin);
}

} // namespace

int PhonebookProtocolAdaptor::addFullEntry(DirectoryServiceIfc* directory, const std::string* surname,
                                           const std::string* firstname, const std::string* office,
                                           const std::string* mobile, const std::string* privateNumber,
                                           const std::string* email, const std::string* group,
                                           const std::string* defaultNumber, const std::string* company,
                                           const std::string* office2, const std::string* address,
                                           const std::string* address2, const std::string* jobFunction,
                                           const std::string* picture, const std::string* externalId,
                                           std::string& uniqueId)
{
    PB_TRACE("PhonebookProtocolAdaptor::addFullEntry()");
    const std::string fields =
        escapedElement("Surname", *surname) + escapedElement("Firstname", *firstname) +
        escapedElement("Office", *office) + escapedElement("Mobile", *mobile) +
        escapedElement("Private", *privateNumber) + escapedElement("Email", *email) +
        element("Group", *group) + element("DefaultNumber", defaultNumberCode(*defaultNumber)) +
        escapedElement("Company", *company) + escapedElement("Office2", *office2) +
        escapedElement("Address", *address) + escapedElement("Address2", *address2) +
        escapedElement("JobFunction", *jobFunction) + element("VoiceDial", "") +
        escapedElement("Picture", *picture) + escapedElement("ExternalID", *externalId) +
        (uniqueId.empty() ? "" : element("UniqueID", uniqueId));
    const auto answer = answerTo(directory, document("write_request", element("Entry", fields)));
    if (!succeeded(answer, PhonebookXmlParser::WRITE_RESPONSE))
        return answer.getFailureMessage() == nOUT_OF_SPACE ? PB_Error::DB_OUT_OF_SPACE : PB_Error::DB_WRITE;
    uniqueId = answer.getUniqueId();
    return PB_Error::SUCCESS;
}

int PhonebookProtocolAdaptor::getFullEntryData(DirectoryServiceIfc* directory, const std::string* uniqueId,
                                               std::vector<std::string>& fields)
{
    PB_TRACE("PhonebookProtocolAdaptor::getFullEntryData()");
    const auto answer =
        answerTo(directory, document("read_request", element("Entry", element("UniqueID", *uniqueId))));
    if (!succeeded(answer, PhonebookXmlParser::READ_RESPONSE))
        return 0;
    fields.insert(fields.end(),
                  {answer.getSurname(), answer.getFirstname(), answer.getOffice(), answer.getMobile(),
                   answer.getPrivate(), answer.getEmail(), answer.getGroup(),
                   dataBaseEnum2IconName(answer.getDefaultNumber()), answer.getCompany(), answer.getOffice2(),
                   answer.getAddress(), answer.getAddress2(), answer.getJobFunction(), answer.getPicture(),
                   answer.getExternalId()});
    return 1;
}

int PhonebookProtocolAdaptor::deleteEntry(DirectoryServiceIfc* directory, const std::string* uniqueId)
{
    PB_TRACE("PhonebookProtocolAdaptor::deleteEntry()");
    const auto answer =
        answerTo(directory, document("delete_request", element("Entry", element("UniqueID", *uniqueId))));
    return succeeded(answer, PhonebookXmlParser::DELETE_RESPONSE) ? 1 : 0;
}

int PhonebookProtocolAdaptor::deleteAll(DirectoryServiceIfc* directory, int group)
{
    PB_TRACE("PhonebookProtocolAdaptor::deleteAll()");
    const std::string entry =
        group == nALL_GROUPS ? ""
                             : element("Entry", element("Group", PhonebookGroup::groupIndexToTag(group)));
    const auto answer = answerTo(directory, document("delete_request", entry));
    return succeeded(answer, PhonebookXmlParser::DELETE_RESPONSE) ? 1 : 0;
}

int PhonebookProtocolAdaptor::getListData(DirectoryServiceIfc* directory, int group,
                                          std::vector<std::string>& items)
{
    PB_TRACE("PhonebookProtocolAdaptor::getListData()");
    if (!directory)
        return 0;
    const std::string list = group == nALL_GROUPS
                                 ? directory->getList()
                                 : directory->getList(PhonebookGroup::groupIndexToTag(group));
    if (list.empty() || list == nEMPTY_LIST)
        return 0;
    const auto lines = static_cast<std::size_t>(std::count(list.begin(), list.end(), '\n')) + 1;
    items.reserve(items.size() + std::max(nLEAST_ITEMS, lines));
    appendPieces(list, '\n', items);
    if (items.back().empty()) // the text ended with a newline
        items.pop_back();
    return 1;
}

int PhonebookProtocolAdaptor::getEntryData(const std::string* item, std::vector<std::string>& fields)
{
    PB_TRACE("PhonebookProtocolAdaptor::getEntryData()");
    if (item->empty())
        return 0;
    fields.reserve(nITEM_FIELDS);
    appendPieces(*item, '\t', fields);
    if (fields.size() != nITEM_FIELDS)
        return 0;
    fields[nDEFAULT_NUMBER_FIELD] = dataBaseEnum2IconName(fields[nDEFAULT_NUMBER_FIELD]);
    return 1;
}

std::string PhonebookProtocolAdaptor::dataBaseEnum2IconName(const std::string& code)
{
    PB_TRACE("PhonebookProtocolAdaptor::dataBaseEnum2IconName()");
    if (code == "1")
        return PhonebookListEntry::nOFFICE;
    if (code == "2")
        return PhonebookListEntry::nOFFICE2;
    if (code == "3")
        return PhonebookListEntry::nMOBILE;
    if (code == "4")
        return PhonebookListEntry::nPRIVATE;
    return PhonebookListEntry::nNONE;
}
