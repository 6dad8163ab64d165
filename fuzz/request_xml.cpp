// Any request at all gets a well-formed answer, and what was stored is read again as it was.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include <expat.h>

#include "directory/ContactText.h"
#include "directory/RequestXml.h"

namespace {

void expectWellFormed(const std::string& xml)
{
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate(nullptr),
                                                                         XML_ParserFree);
    if (XML_Parse(parser.get(), xml.data(), static_cast<int>(xml.size()), XML_TRUE) != XML_STATUS_OK)
        std::abort();
}

// As the store cleans them before it keeps them.
Contact cleaned(Contact contact)
{
    for (const auto& field : nCARD_FIELDS)
        contact.*field.text = cleanText(contact.*field.text);
    contact.picture = cleanText(contact.picture);
    contact.externalId = cleanText(contact.externalId);
    return contact;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto request = parseDirectoryRequest(std::string(reinterpret_cast<const char*>(data), size));
    if (!request) {
        expectWellFormed(failureAnswer(request.error().sentence));
        return 0;
    }
    const auto contact = cleaned(request.value().contact);
    auto answer = readAnswer(contact);
    expectWellFormed(answer);
    expectWellFormed(writeAnswer(contact.id));

    // The answer has the fields of a request: read as one, it must say the same.
    constexpr std::string_view response = "read_response";
    answer.replace(answer.find(response), response.size(), "write_request");
    const auto again = parseDirectoryRequest(answer);
    if (!again || again.value().contact != contact)
        std::abort();
    return 0;
}
