// The SIP engine at work: a process and the connection to it, both started again whenever one ends.

#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include "calls/sip/BaresipControl.h"
#include "calls/sip/BaresipProcess.h"
#include "calls/sip/SipPassword.h"
#include "calls/sip/SipSettings.h"

// Everything on the thread that runs the io_context.
class BaresipEngine {
public:
    struct Hooks {
        std::function<void()> up; // it takes commands
        std::function<void()> down;
        std::function<void()> failed; // it could not be started, or has ended by itself
        std::function<void(const EngineMessage&)> said;
    };

    BaresipEngine(boost::asio::io_context& io, SipSettings settings, Hooks hooks);
    ~BaresipEngine();

    BaresipEngine(const BaresipEngine&) = delete;
    BaresipEngine& operator=(const BaresipEngine&) = delete;

    void start();
    // Nothing while it is down.
    void send(const std::vector<EngineCommand>& commands);
    void restart();
    // Ends it until restart().
    void rest() { stop(); }
    // Whether there is another password than the one that it has.
    bool hasNewPassword() const;

private:
    Result<void> tryToStart();
    void connected(int port);
    void said(const EngineMessage& message);
    // It is gone, for this reason, and started again after a while.
    void fail(const std::string& reason);
    void startLater();
    void stop();
    std::string readPassword() const;
    std::filesystem::path folder() const { return m_settings.profile / "sip-engine"; }

    boost::asio::io_context& m_io;
    const SipSettings m_settings;
    const Hooks m_hooks;
    const SipPassword m_passwordFile;
    std::string m_password;
    std::unique_ptr<BaresipProcess> m_process;
    std::shared_ptr<BaresipControl> m_control;
    boost::asio::steady_timer m_restart;
    std::chrono::milliseconds m_delay;
    std::chrono::steady_clock::time_point m_upSince;
    bool m_up = false;
};
