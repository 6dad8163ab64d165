// How a number is written for people to read: "030 1234567" at home, "+44 20 7946 0958" abroad.
//
// It knows the countries' numbers, not this telephone's dial plan: it never makes a canonical form and
// never decides what is dialled (DialPlan does). It takes microseconds, not for every row of a long list.

#pragma once

#include <string>

class NumberFormat {
public:
    // `countryCode` is the own country's, digits only; without one every number is shown in full.
    explicit NumberFormat(std::string countryCode);

    // A canonical number in its country's grouping: national within the own country, international
    // outside. What is not "+" and digits (internal and emergency numbers, codes with * and #, text),
    // and what is no possible number, or fits no grouping, stays as it is. [any-thread]
    std::string shown(const std::string& canonical) const;

private:
    std::string m_countryCode;
};
