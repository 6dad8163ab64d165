// Any file at all is read without harm, gives valid JSON, and what it gives is a card again.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include <nlohmann/json.hpp>

#include "Convert.h"

namespace {

void writeAgain(const std::string& line)
{
    std::istringstream record(line + '\n');
    std::ostringstream card;
    std::ostringstream errors;
    if (vcard::writeCards(record, card, errors, vcard::Version::V30) != vcard::Outcome::Done)
        std::abort();
    std::istringstream again(card.str());
    std::ostringstream lines;
    if (vcard::parseCards(again, lines, errors) != vcard::Outcome::Done)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    vcard::silenceLibrary();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::istringstream file(std::string(reinterpret_cast<const char*>(data), size));
    std::ostringstream lines;
    std::ostringstream errors;
    vcard::parseCards(file, lines, errors);

    std::istringstream parsed(lines.str());
    for (std::string line; std::getline(parsed, line);) {
        if (!nlohmann::json::parse(line).contains("invalid"))
            writeAgain(line);
    }
    return 0;
}
