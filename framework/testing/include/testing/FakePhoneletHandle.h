#pragma once

#include <string>
#include <vector>

#include <framework/PhoneletIfc.h>

class FakePhoneletHandle final : public PhoneletIfc {
public:
    struct Push {
        std::string from;
        std::string phonelet;
        int mode;
    };
    struct Offer {
        std::string number;
        std::string callingDevice;
    };

    int answer = 0; // what dialNumber() returns
    std::vector<Push> pushes;
    std::vector<Offer> offers;
    std::vector<std::string> left;

    void push(const std::string& from, const std::string& phonelet, int mode) override
    {
        pushes.push_back({from, phonelet, mode});
    }
    int dialNumber(const std::string& number, const std::string& callingDevice) override
    {
        offers.push_back({number, callingDevice});
        return answer;
    }
    void leave(const std::string& name) override { left.push_back(name); }
};
