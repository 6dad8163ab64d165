// What digits mean here: which numbers are internal, and what an outside number is in full.
//
// A number is in its canonical form as "+", country code and the rest, without separators (ITU-T
// E.123 without its blanks). Internal numbers without an enterprise prefix, emergency numbers, codes
// (* and #), text with letters and what fits no rule of the place are left as they are.
//
// Digits are read in this order: emergency number; outside line; service number; international
// prefix; national prefix; internal number; local number.

#pragma once

#include <string>
#include <string_view>
#include <vector>

struct WrittenNumber;

struct DialPlanRules {
    std::string countryCode;          // digits; "" leaves all numbers as they are
    std::string areaCode;             // without the national prefix; "" where it is always dialled
    std::string nationalPrefix = "0"; // "" where numbers are always dialled in full
    int nationalDigits = 0;           // of every number of the country, without that prefix; 0: they differ
    int leastLocalDigits = 0;         // shorter numbers are never local
    std::string internationalPrefix = "00";     // "" where "+" is dialled
    std::string outsideLine;                    // "" when nothing is dialled for one
    std::vector<std::string> otherOutsideLines; // understood, never dialled
    bool dialsLocalNumbers = false;             // whether this place's numbers go without the area code

    int internalDigits = 0; // numbers up to this length are internal
    // If there are any, an internal number also matches one of these: "x" stands for any digit, "2xxx".
    std::vector<std::string> internalPatterns;
    std::string internalFirstDigits; // if there are any, an internal number also begins with one of them
    // What stands before internal numbers when others call them, in full: "+49 30 23125".
    std::string enterprisePrefix;

    std::vector<std::string> emergencyNumbers;
    // Outside numbers that are the same everywhere in the country, "x" for any digit: "116xxx".
    std::vector<std::string> serviceNumbers;
};

class DialPlan {
public:
    explicit DialPlan(DialPlanRules rules);

    // Of a number as it is written or stored, where the digits for an outside line are found only if
    // they stand apart ("0 030 1234567") or nothing else makes sense: "0030 210 12345" is Greek. Text
    // that is no number stays as it is; the canonical form is its own. [any-thread]
    std::string canonical(const std::string& number) const;

    // Of digits as they were dialled, with those for the outside line: where that is 0, 00301234567
    // is 030 1234567. What dialString() makes of a number has that number's canonical form. [any-thread]
    std::string canonicalOfDialled(const std::string& digits) const;

    // What is dialled for a number in any form: digits with the prefixes that are needed from here.
    // Digits without a separator that begin with an outside line already are dialled as they are.
    // Letters become the digits of their keys; text that is no number stays as it is. [any-thread]
    std::string dialString(const std::string& number) const;

    // What the exchange calls the device with that number, in any form: its extension, also one that
    // cannot be dialled from here because other numbers begin with it. The dial string for a number of
    // somewhere else. [any-thread]
    std::string extension(const std::string& number) const;

    // The own country's, digits only; "" for none.
    const std::string& countryCode() const { return m_rules.countryCode; }

    bool isInternal(std::string_view digits) const;
    // With or without the outside line's digits.
    bool isEmergency(std::string_view digits) const;
    // Whether it is an emergency number and nothing that is said of internal and service numbers leaves
    // any of them to begin with it. Without the outside line's digits, after which much can begin so.
    bool isCompleteEmergency(std::string_view digits) const;

private:
    enum class Reading { Written, Dialled };

    std::string inFull(const WrittenNumber& number, Reading reading) const;
    std::string inFull(std::string_view digits) const;
    std::string dialledInFull(const std::string& digits) const;
    std::string_view withoutOutsideLine(const WrittenNumber& number, std::string_view digits,
                                        Reading reading) const;
    std::string withoutTrunkZero(const WrittenNumber& number) const;
    std::string dialStringOf(const std::string& canonical) const;
    std::string extensionIn(const std::string& canonical) const;
    bool reaches(const std::string& digits, const std::string& canonical) const;
    bool isElsewhere(const WrittenNumber& number) const;
    bool isListedEmergency(std::string_view digits) const;
    bool isOutside(std::string_view digits) const;
    bool isService(std::string_view digits) const;
    bool isAbroad(std::string_view digits) const;
    bool isNational(std::string_view digits) const;
    bool isLocal(std::string_view digits) const;
    bool isLocalLength(std::string_view digits) const;
    bool isNationalLength(std::string_view digits) const;

    DialPlanRules m_rules;
    std::vector<std::string> m_outsideLines; // the one that is dialled comes first
};
