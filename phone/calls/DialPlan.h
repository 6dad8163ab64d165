// What digits mean here: which numbers are internal, and what an outside number is in full.
//
// A number is in its canonical form as "+", country code and the rest, without separators (ITU-T
// E.123 without its blanks). Internal numbers, emergency numbers, service codes (* and #) and text
// with letters are left as they are.

#pragma once

#include <string>
#include <string_view>
#include <vector>

struct DialPlanRules {
    // Numbers that begin with `prefix`, of `length` digits (0: any), have it replaced.
    struct Rule {
        std::string prefix;
        int length = 0;
        std::string replacement;
    };

    std::string countryCode;          // digits; "" leaves all numbers as they are
    std::string areaCode;             // digits without the national prefix; "" where there are none
    std::string nationalPrefix = "0"; // "" where numbers are always dialled in full
    std::string internationalPrefix = "00";
    std::string outsideLine; // "" when nothing is dialled for one
    int internalDigits = 0;  // numbers up to this length are internal
    // If there are any, an internal number also matches one of these: "x" stands for any digit, "2xxx".
    std::vector<std::string> internalPatterns;
    std::vector<std::string> emergencyNumbers;
    std::vector<Rule> rules; // the first that fits wins; asked before everything else
};

class DialPlan {
public:
    explicit DialPlan(DialPlanRules rules);

    // Both leave what has no digits as it is; both are idempotent. [any-thread]
    std::string canonical(const std::string& number) const;
    // What is dialled for a number in any form: digits with the prefixes that are needed from here.
    std::string dialString(const std::string& number) const;

    bool isInternal(std::string_view digits) const;
    // With or without the outside line's digits.
    bool isEmergency(std::string_view digits) const;

private:
    std::string expand(std::string_view digits) const;
    std::string_view withoutOutsideLine(std::string_view digits) const;
    static bool matches(std::string_view pattern, std::string_view digits);

    DialPlanRules m_rules;
};
