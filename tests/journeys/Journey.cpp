#include "Journey.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

constexpr char PROMPT[] = ">>> ";

std::string trimmed(const std::string& text)
{
    const auto first = text.find_first_not_of(' ');
    return first == text.npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

void readHead(Journey& journey, const std::string& line)
{
    journey.head += line + "\n";
    const auto colon = line.find(':');
    if (line.empty() || line.starts_with('#'))
        return;
    if (colon == line.npos)
        throw std::runtime_error("no \"name: value\": " + line);
    const auto name = line.substr(0, colon);
    const auto value = trimmed(line.substr(colon + 1));
    if (name == "contact")
        journey.contacts.push_back(value);
    else if (name == "group")
        journey.groups.push_back(value);
    else if (name == "picture")
        journey.pictures.push_back(value);
    else if (name == "line")
        journey.line = value;
    else if (name == "pbx")
        journey.pbx = value;
    else if (name == "ldap-password")
        journey.ldapPassword = value;
    else if (name != "absent")
        journey.items[name] = value;
    else {
        std::istringstream words(value);
        for (std::string word; words >> word;)
            journey.absent.push_back(word);
    }
}

} // namespace

Journey Journey::read(const fs::path& file)
{
    Journey journey;
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with(PROMPT))
            journey.steps.push_back({line.substr(sizeof(PROMPT) - 1), ""});
        else if (journey.steps.empty())
            readHead(journey, line);
        else if (!line.empty())
            journey.steps.back().screen += line + "\n";
    }
    return journey;
}

std::string Journey::text() const
{
    std::string text = head;
    for (const auto& step : steps)
        text += (&step == &steps.front() ? "" : "\n") + (PROMPT + step.words) + "\n" + step.screen;
    return text;
}

std::vector<fs::path> allJourneys()
{
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(fs::path(SOURCE_DIR) / "tests" / "journeys")) {
        if (entry.path().extension() == ".journey")
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}
