// Dialling while no phonelet takes part in it: with the telephone idle.
// [event thread]

#pragma once

#include <functional>
#include <string>

#include <framework/services/DigitAnalysisServiceEventIfc.h>

class IdleDialler final : public DigitAnalysisServiceEventIfc {
public:
    struct Actions {
        std::function<void(const std::string& digits)> changed; // the digits were edited here
        // The key of what the user is told when the call is refused; "" for nothing.
        std::function<std::string(const std::string& number)> call;
    };

    explicit IdleDialler(Actions actions)
        : m_actions(std::move(actions))
    {
    }

    const std::string& digits() const { return m_digits; }
    // What the user is told of the last call, until they go on-hook or type again; "" for nothing.
    const std::string& refusal() const { return m_refusal; }

    void typed(char digit);
    // Takes the last digit away.
    void clear();
    // Takes away what was typed, and what is said of the last call.
    void clearAll();
    // Dials what was typed.
    void dial();

    void handleInterDigitTimeout(InterDigitTimeOutEvent* event) override;
    void handleInitialDigitTimeout(InterDigitTimeOutEvent* event) override;
    bool isDiallingOk() override { return true; }
    void handleDialingStarted(const std::string& digits) override;
    void handleDialingStarted(const std::string& digits, CallPartyIdentifier party) override;
    void handleDialingStopped() override;
    bool getDialPartyDetails(CallPartyIdentifier& party) override;
    void getEventHandlerName(std::string& name) override { name = "Idle"; }

private:
    void call(std::string number);

    const Actions m_actions;
    std::string m_digits;
    std::string m_refusal;
};
