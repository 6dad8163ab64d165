// A PBX for tests: it does nothing by itself. What it receives and sends is said step by step, and waited
// for.

#pragma once

#include <cstdint>
#include <string>

#include "calls/pbx/CstaFrame.h"
#include "calls/pbx/PbxSettings.h"

class TestPbx {
public:
    // On a free port of this machine.
    TestPbx();
    ~TestPbx();
    TestPbx(const TestPbx&) = delete;
    TestPbx& operator=(const TestPbx&) = delete;

    std::uint16_t port() const { return m_port; }
    // Of a telephone that is attached to it: tries again at once, is in no hurry, and asks nothing by itself.
    PbxSettings settings() const;

    // Takes the next connection, in the place of what there was. False when nobody came.
    bool accept();
    // The next message; id -1 when none came.
    CstaFrame receive();
    // The name of its outermost element; "" when none came.
    std::string receiveName();
    // The same, which is then answered with `xml` under its id.
    std::string answer(const std::string& xml);

    void send(int id, const std::string& xml);
    void event(const std::string& xml) { send(CstaFrame::EVENT_ID, xml); }
    void sendRaw(const std::string& octets);
    void close();
    // Says nothing more: the other side has all that was sent before it closes.
    void hangUp();
    // Whether the other side has closed.
    bool isClosed();

    // Takes a connection and answers what a telephone asks first.
    bool welcome(const std::string& availability = "available");

    // `xml` with CSTA's namespace in its outermost element.
    static std::string csta(const std::string& xml);
    static std::string nameIn(const std::string& xml);
    // A private event about the phonebook feature, or a row of the display.
    static std::string feature(const std::string& content);
    static std::string row(int row, const std::string& text);
    // Feature data as an extension.
    static std::string extension(const std::string& content);

private:
    int m_listener = -1;
    int m_peer = -1;
    std::uint16_t m_port = 0;
    CstaFrameReader m_reader;
};
