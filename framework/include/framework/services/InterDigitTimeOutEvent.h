// No further digit came for a while: the number is complete.

#pragma once

#include <string>

#include <framework/Export.h>

class FRAMEWORK_API InterDigitTimeOutEvent {
public:
    explicit InterDigitTimeOutEvent(std::string dialString);
    virtual ~InterDigitTimeOutEvent();

    // The digits as typed, brought to the form that is dialled.
    const std::string& getDialString() const { return m_dialString; }

private:
    std::string m_dialString;
};
