#include "JourneyPbx.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <utility>

namespace {

constexpr int FLOOD = 1000;
const std::string OWN = "100"; // the telephone's device
const std::string OTHER = "4711";
const std::string NAME = "<featureName>PBXPhonebook</featureName>";

// The text between <`element`> and its end.
std::string textIn(const std::string& xml, const std::string& element)
{
    const auto start = xml.find("<" + element + ">");
    if (start == xml.npos)
        return "";
    const auto text = start + element.size() + 2;
    return xml.substr(text, xml.find('<', text) - text);
}

// Of the only call that there is, at device `at`.
std::string connection(const std::string& element, const std::string& at)
{
    return "<" + element + "><callID>7</callID><deviceID>" + at + "</deviceID></" + element + ">";
}

std::string device(const std::string& element, const std::string& number)
{
    return "<" + element + "><deviceIdentifier>" + number + "</deviceIdentifier></" + element + ">";
}

std::string callEvent(const std::string& name, const std::string& content)
{
    return "<" + name + "Event><monitorCrossRefID>m1</monitorCrossRefID>" + content + "</" + name + "Event>";
}

std::string established(const std::string& answering)
{
    return callEvent("Established",
                     connection("establishedConnection", answering) + device("answeringDevice", answering));
}

std::string cleared()
{
    return callEvent("ConnectionCleared",
                     connection("droppedConnection", OWN) + "<cause>normalClearing</cause>");
}

// What an event says of the call; "" for any other word.
std::string callEventOf(const std::string& word)
{
    if (word == "alerting")
        return callEvent("Delivered", connection("connection", OTHER) + device("alertingDevice", OTHER) +
                                          device("callingDevice", OWN));
    if (word == "answered")
        return established(OTHER);
    if (word == "cleared")
        return cleared();
    if (word == "busy")
        return callEvent("Failed", connection("failedConnection", OWN) + "<cause>busy</cause>");
    if (word.starts_with("rings:"))
        return callEvent("Delivered", connection("connection", OWN) + device("alertingDevice", OWN) +
                                          device("callingDevice", word.substr(word.find(':') + 1)));
    return "";
}

} // namespace

JourneyPbx::JourneyPbx(std::string availability)
    : m_availability(std::move(availability))
{
}

JourneyPbx::~JourneyPbx()
{
    end();
}

// The telephone closes the connection when it has noticed.
void JourneyPbx::end()
{
    m_pbx.hangUp();
    if (m_thread.joinable())
        m_thread.join();
}

std::map<std::string, std::string> JourneyPbx::items() const
{
    return {{"pbx-server", "127.0.0.1:" + std::to_string(m_pbx.port())},
            {"pbx-device", m_pbx.settings().device},
            {"pbx-request-timeout", "60"}};
}

void JourneyPbx::attach()
{
    end();
    // An impatient telephone may have given a first attempt up before anybody listened.
    constexpr int ATTEMPTS = 5;
    for (int attempt = 1; !m_pbx.welcome(m_availability); ++attempt) {
        if (attempt == ATTEMPTS)
            throw std::runtime_error("the telephone is not attached");
    }
    m_isOver = false;
    m_thread = std::thread([this] { serve(); });
    settle();
}

// What this has answered to what the telephone has said is heard with the second reply.
void JourneyPbx::settle()
{
    waitForReply();
    waitForReply();
}

void JourneyPbx::waitForReply()
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_isOver)
            return;
    }
    // Both sides keep their order: with the reply all that was said before has been heard.
    const int question = m_lastQuestion = m_lastQuestion % CstaFrame::GREATEST_REQUEST_ID + 1;
    send(question, "<SystemStatus/>");
    std::unique_lock lock(m_mutex);
    const auto isHeard = [&] { return m_isOver || m_lastReply == question; };
    if (!m_heard.wait_for(lock, std::chrono::seconds(10), isHeard))
        throw std::runtime_error("the telephone does not answer its PBX");
}

bool JourneyPbx::say(const std::string& whole)
{
    if (!whole.starts_with("pbx:"))
        return false;
    const auto word = whole.substr(whole.find(':') + 1);
    if (word.starts_with("row:"))
        sayRow(word.substr(word.find(':') + 1));
    else if (word == "available" || word == "unavailable")
        sayFeature("<Availability>" + (m_availability = word) + "</Availability>");
    else if (word == "off")
        sayFeature("<Status>OFF</Status>");
    else if (word == "disabled" || word == "partiallyDisabled" || word == "enabled")
        event("<SystemStatus><systemStatus>" + word + "</systemStatus></SystemStatus>");
    else if (word == "refuses" || word == "accepts" || word == "vanishes" || word == "silent") {
        const std::lock_guard lock(m_mutex);
        m_way = word;
    } else if (word == "flood") {
        for (int i = 1; i <= FLOOD; ++i)
            event(TestPbx::row(5, std::to_string(i)));
    } else if (word == "lost")
        end();
    else if (word == "back")
        attach();
    else if (const auto told = callEventOf(word); !told.empty())
        event(told);
    else
        return false;
    return true;
}

// "2:Miller,_Anna": blanks would end the word.
void JourneyPbx::sayRow(const std::string& rowAndText)
{
    const auto colon = rowAndText.find(':');
    auto text = rowAndText.substr(colon + 1);
    std::replace(text.begin(), text.end(), '_', ' ');
    event(TestPbx::row(std::stoi(rowAndText.substr(0, colon)), text));
}

void JourneyPbx::sayFeature(const std::string& content)
{
    event(TestPbx::feature(NAME + content));
}

std::vector<std::string> JourneyPbx::takeRequests()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_requests, {});
}

void JourneyPbx::serve()
{
    for (auto message = m_pbx.receive(); message.invokeId >= 0; message = m_pbx.receive())
        take(message);
    const std::lock_guard lock(m_mutex);
    m_isOver = true;
    m_heard.notify_all();
}

void JourneyPbx::take(const CstaFrame& message)
{
    const std::lock_guard lock(m_mutex);
    const auto name = TestPbx::nameIn(message.xml);
    if (name == "SystemStatusResponse") {
        m_lastReply = message.invokeId;
        m_heard.notify_all();
    } else if (name == "ButtonPress") {
        m_requests.push_back("key " + textIn(message.xml, "button"));
        send(message.invokeId, "<ButtonPressResponse/>");
    } else if (name == "MakeCall") {
        m_requests.push_back("call " + textIn(message.xml, "calledDirectoryNumber"));
        send(message.invokeId,
             "<MakeCallResponse>" + connection("callingDevice", OWN) + "</MakeCallResponse>");
    } else if (name == "AnswerCall") {
        send(message.invokeId, "<AnswerCallResponse/>");
        event(established(OWN));
    } else if (name == "ClearConnection") {
        m_requests.push_back("hang up");
        send(message.invokeId, "<ClearConnectionResponse/>");
        event(cleared());
    } else if (name == "RequestSystemStatus") {
        m_requests.push_back(textIn(message.xml, "Action"));
        if (m_way == "silent")
            return;
        if (m_way == "vanishes")
            sayFeature("<Availability>unavailable</Availability>");
        send(message.invokeId, m_way == "refuses" ? "<CSTAErrorCode><stateIncompatibility>invalidObjectState"
                                                    "</stateIncompatibility></CSTAErrorCode>"
                                                  : "<RequestSystemStatusResponse/>");
    }
}

void JourneyPbx::send(int id, const std::string& xml)
{
    const std::lock_guard lock(m_sendMutex);
    m_pbx.send(id, xml);
}
