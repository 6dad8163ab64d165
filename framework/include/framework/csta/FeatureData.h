// Private data about a feature of the PBX, in system status exchanges.

#pragma once

#include <string>

struct FeatureData {
    std::string featureName;
    std::string Action;
    std::string DeActivation;
    std::string Status; // "OFF" when it was switched off
    std::string Availability;
    std::string ButtonID;
};
