#include "KeypadLetters.h"

namespace {

constexpr std::string_view nTABLE =
#include "keypad-letters.txt"
    ;

// What stands behind "<language> <key> " on its line; empty without such a line.
std::string_view charactersOf(std::string_view language, char key)
{
    const auto start = '\n' + std::string(language) + ' ' + key + ' ';
    const auto at = nTABLE.find(start);
    if (at == std::string_view::npos)
        return {};
    const auto rest = nTABLE.substr(at + start.size());
    return rest.substr(0, rest.find('\n'));
}

bool continuesCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

} // namespace

std::vector<std::string> keypadLetters(std::string_view language, char key)
{
    auto characters = charactersOf(language.substr(0, language.find_first_of("_-.@")), key);
    if (characters.empty())
        characters = charactersOf("en", key);

    std::vector<std::string> letters;
    for (const char byte : characters) {
        if (continuesCharacter(byte))
            letters.back() += byte;
        else
            letters.emplace_back(1, byte);
    }
    return letters;
}
