// deskphone-vcard: address books from and for other programs, as lines of JSON.
//
// It stands beside the telephone because its library is heavy and its input comes from
// anywhere: a broken file can stop this program and nothing else.

#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Convert.h"

namespace {

constexpr int nUSAGE_ERROR = 64;

constexpr char nUSAGE[] = "Usage: deskphone-vcard parse FILE\n"
                          "           writes each card of FILE (- for standard input) as a line of JSON\n"
                          "       deskphone-vcard write [--version 2.1|3.0|4.0]\n"
                          "           writes each line of JSON on standard input as a card\n"
                          "\n"
                          "Exit code: 0 done, 1 failed or incomplete, 2 not a vCard file, 64 wrong usage.\n";

int exitCode(vcard::Outcome outcome)
{
    switch (outcome) {
    case vcard::Outcome::Done:
        if (std::cout.flush())
            return 0;
        std::cerr << "The cards cannot be written. Is the disk full?\n";
        return 1;
    case vcard::Outcome::Failed:
        return 1;
    case vcard::Outcome::NotACardFile:
        return 2;
    }
    return 1;
}

int usageError()
{
    std::cerr << nUSAGE;
    return nUSAGE_ERROR;
}

int parse(const std::string& path)
{
    if (path == "-")
        return exitCode(vcard::parseCards(std::cin, std::cout, std::cerr));
    std::ifstream file(path, std::ios::binary);
    if (!file || file.peek() == std::ifstream::traits_type::eof()) {
        const bool empty = file.is_open() && !file.bad() && file.eof();
        std::cerr << path << (empty ? " is empty.\n" : " cannot be read.\n");
        return empty ? exitCode(vcard::Outcome::NotACardFile) : 1;
    }
    return exitCode(vcard::parseCards(file, std::cout, std::cerr));
}

std::optional<vcard::Version> versionNamed(std::string_view number)
{
    if (number == "2.1")
        return vcard::Version::V21;
    if (number == "3.0")
        return vcard::Version::V30;
    if (number == "4.0")
        return vcard::Version::V40;
    return std::nullopt;
}

} // namespace

int main(int argc, char** argv)
{
    std::ios::sync_with_stdio(false);
    vcard::silenceLibrary();

    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.size() == 1 && (words[0] == "--help" || words[0] == "-h")) {
        std::cout << nUSAGE;
        return 0;
    }
    if (words.size() == 2 && words[0] == "parse")
        return parse(words[1]);
    if (words.empty() || words[0] != "write")
        return usageError();

    auto version = std::optional(vcard::Version::V30);
    if (words.size() == 3 && words[1] == "--version")
        version = versionNamed(words[2]);
    else if (words.size() != 1)
        version = std::nullopt;
    if (!version)
        return usageError();
    return exitCode(vcard::writeCards(std::cin, std::cout, std::cerr, *version));
}
