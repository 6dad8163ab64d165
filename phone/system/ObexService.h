// Sending contacts over Bluetooth. This telephone has no sender: it refuses, and says so in the log.

#pragma once

#include <framework/services/OBEXServiceIfc.h>

class ObexService final : public OBEXServiceIfc {
public:
    bool sendContact(const std::string& name, const std::string& vCard) override;
};
