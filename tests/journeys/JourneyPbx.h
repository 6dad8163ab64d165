// The PBX that a journey's telephone is attached to. It takes the telephone's requests on a thread of its
// own; what it says by itself the journey tells it to say.

#pragma once

#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "../phone/calls/pbx/TestPbx.h"

class JourneyPbx {
public:
    // `availability` of its phonebook: "available" or "unavailable".
    explicit JourneyPbx(std::string availability);
    ~JourneyPbx();

    // The configuration of a telephone that is to be attached to it.
    std::map<std::string, std::string> items() const;
    // Waits until that is so.
    void attach();

    // A word of JourneyPhone::run() that begins with "pbx:". False for anything else.
    bool say(const std::string& whole);

    // Waits until the telephone has all that was said, and this all that the telephone has said.
    void settle();

    // What the telephone has asked of it since the last time: "key down", "activate".
    std::vector<std::string> takeRequests();

private:
    void end();
    void waitForReply();
    void serve();
    void take(const CstaFrame& message);
    void sayRow(const std::string& rowAndText);
    void sayFeature(const std::string& content);
    void event(const std::string& xml) { send(CstaFrame::EVENT_ID, xml); }
    void send(int id, const std::string& xml);

    TestPbx m_pbx;
    std::string m_availability;
    std::thread m_thread;
    int m_lastQuestion = 0;

    std::mutex m_sendMutex; // for what is sent
    std::mutex m_mutex;     // for what follows
    std::condition_variable m_heard;
    bool m_isOver = true;          // the connection
    std::string m_way = "accepts"; // of opening its phonebook
    int m_lastReply = 0;
    std::vector<std::string> m_requests;
};
