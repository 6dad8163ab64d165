// Numbers in both directions, under the dial plans of several countries and companies.

#include <algorithm>
#include <fstream>
#include <functional>
#include <map>
#include <random>
#include <sstream>

#include <gtest/gtest.h>

#include "calls/DialPlan.h"

namespace {

constexpr char nPAIRS[] = SOURCE_DIR "/tests/data/numbers/pairs.txt";

struct Pair {
    std::string plan;
    DialPlanRules rules;
    bool asDialled = false;
    std::string text;
    std::string canonical;
    std::string dialled;
};

std::vector<std::string> split(const std::string& text, const std::string& between)
{
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (auto end = text.find(between); end != std::string::npos; end = text.find(between, start)) {
        parts.push_back(text.substr(start, end - start));
        start = end + between.size();
    }
    parts.push_back(text.substr(start));
    return parts;
}

void setRule(DialPlanRules& rules, const std::string& name, const std::string& value)
{
    const std::map<std::string, std::function<void()>> setters{
        {"country", [&] { rules.countryCode = value; }},
        {"area", [&] { rules.areaCode = value; }},
        {"national", [&] { rules.nationalPrefix = value; }},
        {"national-digits", [&] { rules.nationalDigits = std::stoi(value); }},
        {"international", [&] { rules.internationalPrefix = value; }},
        {"least-local", [&] { rules.leastLocalDigits = std::stoi(value); }},
        {"local", [&] { rules.dialsLocalNumbers = value == "yes"; }},
        {"outside", [&] { rules.outsideLine = value; }},
        {"others", [&] { rules.otherOutsideLines = split(value, ","); }},
        {"internal", [&] { rules.internalDigits = std::stoi(value); }},
        {"internal-patterns", [&] { rules.internalPatterns = split(value, ","); }},
        {"first", [&] { rules.internalFirstDigits = value; }},
        {"enterprise", [&] { rules.enterprisePrefix = value; }},
        {"emergency", [&] { rules.emergencyNumbers = split(value, ","); }},
        {"service", [&] { rules.serviceNumbers = split(value, ","); }},
    };
    setters.at(name)();
}

DialPlanRules rulesOf(const std::string& line)
{
    DialPlanRules rules;
    std::istringstream words(line);
    for (std::string word; words >> word;) {
        std::replace(word.begin(), word.end(), '_', ' ');
        const auto equals = word.find('=');
        setRule(rules, word.substr(0, equals), word.substr(equals + 1));
    }
    return rules;
}

std::string utf8(unsigned code)
{
    if (code < 0x800)
        return {static_cast<char>(0xC0 | code >> 6), static_cast<char>(0x80 | (code & 0x3F))};
    return {static_cast<char>(0xE0 | code >> 12), static_cast<char>(0x80 | (code >> 6 & 0x3F)),
            static_cast<char>(0x80 | (code & 0x3F))};
}

std::string withoutEscapes(std::string text)
{
    for (auto at = text.find("\\u"); at != std::string::npos; at = text.find("\\u"))
        text.replace(at, 6, utf8(static_cast<unsigned>(std::stoul(text.substr(at + 2, 4), nullptr, 16))));
    return text;
}

std::vector<Pair> allPairs()
{
    std::vector<Pair> pairs;
    Pair pair;
    const auto isComment = [](const std::string& line) {
        return line == "#" || (line.rfind("# ", 0) == 0 && line.rfind("# |", 0) != 0);
    };
    std::ifstream file(nPAIRS);
    for (std::string line; std::getline(file, line);) {
        if (line.rfind("plan ", 0) == 0) {
            const auto end = line.find(' ', 5);
            pair.plan = line.substr(5, end - 5);
            pair.rules = rulesOf(end == std::string::npos ? "" : line.substr(end));
        } else if (!line.empty() && !isComment(line)) {
            pair.asDialled = line.rfind("> ", 0) == 0;
            auto columns = split(withoutEscapes(pair.asDialled ? line.substr(2) : line), " | ");
            columns.resize(3);
            pair.text = columns[0];
            pair.canonical = columns[1] == "=" ? pair.text : columns[1];
            pair.dialled = columns[2] == "=" ? pair.text : columns[2];
            pairs.push_back(pair);
        }
    }
    return pairs;
}

// What must hold of every number under every plan.
void expectToBeConsistent(const DialPlan& plan, const std::string& text)
{
    const auto full = plan.canonical(text);
    EXPECT_EQ(plan.canonical(full), full);
    const auto digits = plan.dialString(full);
    EXPECT_EQ(plan.dialString(digits), digits) << full;
    const bool isInFull =
        full.rfind('+', 0) == 0 && full.find_first_not_of("0123456789", 1) == std::string::npos;
    if (isInFull && digits.front() != '+') {
        EXPECT_EQ(plan.canonicalOfDialled(digits), full) << digits;
    }
    // Who has typed it off-hook is understood, and so is what he is understood to have dialled.
    const auto typed = plan.dialString(text);
    EXPECT_EQ(plan.dialString(typed), typed) << text;
    const auto asDialled = plan.canonicalOfDialled(text);
    EXPECT_EQ(plan.canonicalOfDialled(asDialled), asDialled);
}

std::vector<DialPlanRules> allPlans()
{
    std::map<std::string, DialPlanRules> plans;
    for (const auto& pair : allPairs())
        plans[pair.plan] = pair.rules;
    std::vector<DialPlanRules> rules;
    for (auto& [name, plan] : plans)
        rules.push_back(std::move(plan));
    return rules;
}

} // namespace

TEST(DialPlanPairs, AreManyAndOfManyPlans)
{
    EXPECT_GE(allPairs().size(), 300u);
    EXPECT_GE(allPlans().size(), 12u);
}

TEST(DialPlanPairs, AreRightInBothDirections)
{
    for (const auto& pair : allPairs()) {
        SCOPED_TRACE(pair.plan + ": \"" + pair.text + "\"");
        const DialPlan plan(pair.rules);
        const auto full = pair.asDialled ? plan.canonicalOfDialled(pair.text) : plan.canonical(pair.text);
        EXPECT_EQ(full, pair.canonical);
        EXPECT_EQ(plan.dialString(pair.asDialled ? pair.text : full), pair.dialled);
        expectToBeConsistent(plan, pair.text);
    }
}

TEST(DialPlanPairs, AreConsistentUnderAllPlans)
{
    const auto pairs = allPairs();
    for (const auto& rules : allPlans()) {
        const DialPlan plan(rules);
        for (const auto& pair : pairs) {
            SCOPED_TRACE(pair.text + " in +" + rules.countryCode + " with \"" + rules.outsideLine + '"');
            expectToBeConsistent(plan, pair.text);
        }
    }
}

TEST(DialPlanPairs, AreConsistentForAnyText)
{
    std::mt19937 random(4711);
    const std::string characters = "00000112345678999+ ()-/*#A";
    for (const auto& rules : allPlans()) {
        const DialPlan plan(rules);
        for (int i = 0; i < 2000; ++i) {
            std::string text;
            for (auto length = random() % 18; length > 0; --length)
                text += characters[random() % (i % 2 == 0 ? 16 : characters.size())];
            SCOPED_TRACE("\"" + text + "\" in +" + rules.countryCode + " with \"" + rules.outsideLine + '"');
            expectToBeConsistent(plan, text);
        }
    }
}

TEST(DialPlanPairs, HoldNumbersOfAnyLength)
{
    for (const auto& rules : allPlans()) {
        const DialPlan plan(rules);
        for (const char first : {'0', '1', '9', '+'}) {
            const auto longNumber = first + std::string(199, '1');
            EXPECT_EQ(plan.canonical(longNumber), longNumber);
            EXPECT_EQ(plan.dialString(longNumber), longNumber);
        }
        EXPECT_EQ(plan.canonical(""), "");
        EXPECT_EQ(plan.dialString(""), "");
    }
}

TEST(DialPlanPairs, CutNoCharacterThatIsIncomplete)
{
    const DialPlan plan(rulesOf("country=49 area=30"));
    for (const std::string text : {"030\xC2", "030\xE2\x80", "\xFF", "030\x80", "\xF0\x9F\x93\x9E 030"}) {
        EXPECT_EQ(plan.canonical(text), text);
        EXPECT_EQ(plan.dialString(text), text);
    }
}
