// What the tests of address book files share.

#pragma once

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Convert.h"

using Json = nlohmann::ordered_json;

struct Run {
    vcard::Outcome outcome;
    std::string out;
    std::string errors;
};

inline Run parseText(const std::string& text, const vcard::Limits& limits = {})
{
    std::istringstream in(text);
    std::ostringstream out;
    std::ostringstream errors;
    const auto outcome = vcard::parseCards(in, out, errors, limits);
    return {outcome, out.str(), errors.str()};
}

inline Run writeRecords(const std::string& lines, vcard::Version version = vcard::Version::V30)
{
    std::istringstream in(lines);
    std::ostringstream out;
    std::ostringstream errors;
    const auto outcome = vcard::writeCards(in, out, errors, version);
    return {outcome, out.str(), errors.str()};
}

inline std::vector<Json> jsonLines(const std::string& text)
{
    std::vector<Json> objects;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        objects.push_back(Json::parse(line));
    return objects;
}

// The only card of the properties, each a line.
inline Json parseProperties(const std::string& properties, const vcard::Limits& limits = {})
{
    const auto objects = jsonLines(parseText("BEGIN:VCARD\n" + properties + "END:VCARD\n", limits).out);
    EXPECT_EQ(objects.size(), 1u);
    return objects.empty() ? Json() : objects.front();
}

// The properties of the only card that `record` gives, without the lines around them.
inline std::string writtenProperties(const Json& record, vcard::Version version = vcard::Version::V30)
{
    auto text = writeRecords(record.dump() + "\n", version).out;
    const std::string begin = "BEGIN:VCARD\r\nVERSION:3.0\r\n";
    const std::string end = "END:VCARD\r\n";
    text = text.substr(begin.size(), text.size() - begin.size() - end.size());
    std::erase(text, '\r');
    return text;
}
