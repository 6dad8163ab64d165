#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <framework/services/CallPartyIdentifier.h>
#include <framework/services/DigitAnalysisServiceEventIfc.h>
#include <framework/services/DigitAnalysisServiceIfc.h>

class FakeDigitAnalysis final : public DigitAnalysisServiceIfc {
public:
    DigitAnalysisServiceEventIfc* provider = nullptr;
    int registrations = 0;
    int clearings = 0;
    bool registers = true;
    bool clears = true;
    std::vector<std::pair<std::string, int>> dialStrings;
    std::vector<std::string> converted; // what was passed to convertToCanonical(), before
    std::function<std::string(const std::string&)> canonical = [](const std::string& number) {
        return number;
    };
    struct Party {
        CallPartyIdentifier party;
        bool result;
        int mode;
    };
    std::vector<Party> parties;

    bool setCallContextProvider(DigitAnalysisServiceEventIfc* given) override
    {
        ++registrations;
        if (registers)
            provider = given;
        return registers;
    }
    bool clearCallContextProvider(DigitAnalysisServiceEventIfc* given) override
    {
        ++clearings;
        if (clears && provider == given)
            provider = nullptr;
        return clears;
    }
    bool setDialString(const std::string& digits, int complete) override
    {
        dialStrings.emplace_back(digits, complete);
        return true;
    }
    void convertToCanonical(std::string& number) override
    {
        converted.push_back(number);
        number = canonical(number);
    }
    void setDialPartyDetails(CallPartyIdentifier& party, bool result, int mode) override
    {
        parties.push_back({party, result, mode});
    }
};
