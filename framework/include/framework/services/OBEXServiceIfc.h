// Sends a contact to another device over Bluetooth (OBEX object push).

#pragma once

#include <string>

#include <framework/Executable.h>

class FRAMEWORK_API OBEXServiceIfc : public Executable {
public:
    ~OBEXServiceIfc() override;

    // Offers a vCard (RFC 2426, version 3.0) as file `name`. True when it was handed to the sender;
    // how the transfer ends is the telephone's to show.
    // [phonelet-thread]
    virtual bool sendContact(const std::string& name, const std::string& vCard) = 0;
};
