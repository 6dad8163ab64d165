// The phonelet behind the phonebook's PBX tab: it shows the display lines that the PBX sends, and sends keys
// back. What they mean only the PBX knows.
//
// Lines come as display-updated events of a CSTA monitor; keys go as CSTAButtonPressRequest.

#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <utility>

#include <framework/Phonelet.h>
#include <framework/PhoneletContext.h>
#include <framework/PhoneletIfc.h>
#include <framework/csta/CSTAEventIfc.h>
#include <framework/csta/CSTAEventObserverBase.h>
#include <framework/csta/CSTAEvents.h>
#include <framework/csta/CSTARequests.h>
#include <framework/csta/CSTAServiceIfc.h>
#include <framework/csta/communicationsServiceTexts.h>
#include <framework/display/Display.h>
#include <framework/display/Displayable.h>
#include <framework/display/Frame.h>
#include <framework/host/Key.h>

using namespace communicationsServiceTexts;
using DisplayAPI::Key;

namespace {

constexpr std::size_t LINES = 6;
constexpr char LEAVE[] = "leave"; // the key that tells the PBX that nobody looks any more

// The name of a key for the PBX; "" when it is the telephone's own.
std::string buttonOf(const Key& key)
{
    switch (key.kind) {
    case Key::Kind::Digit:
        return {key.digit};
    case Key::Kind::Text:
        return key.text.find_first_not_of("0123456789*#") == std::string::npos ? key.text : "";
    case Key::Kind::Up:
        return "up";
    case Key::Kind::Down:
        return "down";
    case Key::Kind::Left:
        return "left";
    case Key::Kind::Right:
        return "right";
    case Key::Kind::Ok:
        return "ok";
    case Key::Kind::Clear:
    case Key::Kind::ClearAll:
        return "clear";
    default:
        return "";
    }
}

// The PBX's display. It has no cursor of its own: every key is the PBX's.
class StimulusScreen final : public DisplayAPI::Displayable {
public:
    explicit StimulusScreen(std::function<void(const std::string&)> pressed)
        : m_pressed(std::move(pressed))
    {
    }
    ~StimulusScreen() override { detach(); }

    // A line without text ends the display there.
    void setLine(std::size_t line, const std::string& text)
    {
        if (line >= LINES)
            return;
        m_lines[line] = text;
        if (text.empty())
            std::fill(m_lines.begin() + static_cast<std::ptrdiff_t>(line), m_lines.end(), "");
    }
    void clear() { setLine(0, ""); }

    DisplayAPI::FrameRole role() const override { return DisplayAPI::FrameRole::List; }

    void paint(DisplayAPI::FrameScreen& screen, int rows) const override
    {
        screen.title = title().translated();
        screen.highlighted = false;
        screen.rowCount = count();
        for (int line = 0; line < std::min(rows, screen.rowCount); ++line) {
            DisplayAPI::FrameRow row;
            row.position = line;
            row.text = m_lines[static_cast<std::size_t>(line)];
            screen.rows.push_back(row);
        }
    }

    bool keyPressed(const Key& key) override
    {
        const auto button = buttonOf(key);
        if (!button.empty())
            m_pressed(button);
        return !button.empty();
    }

private:
    // Lines up to the last one with a text.
    int count() const
    {
        const auto last =
            std::find_if(m_lines.rbegin(), m_lines.rend(), [](const auto& line) { return !line.empty(); });
        return static_cast<int>(m_lines.rend() - last);
    }

    const std::function<void(const std::string&)> m_pressed;
    std::array<std::string, LINES> m_lines;
};

class CorvanStimulus final : public Phonelet, public CSTAEventIfc, public CSTAEventObserverBase {
public:
    std::string getInterfaces() override { return "CSTAEventIfc"; }

    void startPhonelet() override
    {
        m_screen.setTitle({"PBX.Phonebook", m_pContext->getTranslator()});
        m_pCalls = dynamic_cast<CSTAServiceIfc*>(m_pContext->getService("CSTAServiceIfc"));
        if (!m_pCalls)
            return;
        CSTAMonitorStartRequest monitor{CSTAMonitorFilter()};
        monitor.setSourceService(this);
        monitor.setDeviceObject("localDeviceID");
        m_pCalls->sendRequest(monitor);
        if (const auto* started = dynamic_cast<CSTAMonitorStartResponse*>(monitor.getResponse()))
            m_monitor = started->getMonitorCrossRefID();
    }

    void stopPhonelet() override
    {
        if (!m_pCalls || m_monitor.empty())
            return;
        CSTAMonitorStopRequest stop(m_monitor);
        m_pCalls->sendRequest(stop);
        m_monitor.clear();
    }
    void shutdown() override { stopPhonelet(); }

    // The phonebook may have gone while the user was on the way to it.
    void show() override
    {
        m_isShown = true;
        m_pContext->getDisplay()->setCurrent(&m_screen);
        if (!isThere())
            leave();
    }
    void hide() override
    {
        m_screen.clear();
        // What the PBX still shows the phonebook would take for lines of a call.
        if (std::exchange(m_isShown, false))
            press(LEAVE);
    }

    void deliverEvent(CSTAEvent* event) override { event->dispatch(this); }

    void handleCSTADisplayUpdatedEvent(CSTADisplayUpdatedEvent* event) override
    {
        const auto& row = event->getLogicalRows();
        const bool isLine = row.size() == 1 && row[0] >= '0' && row[0] <= '9';
        if (isLine && event->getDisplayID() == content_displayIdDisplay)
            m_screen.setLine(static_cast<std::size_t>(row[0] - '0'), event->getContentsOfDisplay());
    }

    // Without the PBX's phonebook there is nothing to show, nor when the PBX has closed it.
    void handleCSTASystemStatusEvent(CSTASystemStatusEvent* event) override
    {
        const auto& state = event->getSystemStatus();
        const auto& feature = event->getFeatureData();
        const bool isDisabled = state == systemState_disabled || state == systemState_partiallyDisabled;
        const bool isGone = feature.featureName == content_feature_name_pbxphonebook &&
                            (feature.Availability == content_feature_unavailable || feature.Status == "OFF");
        if (m_isShown && (isDisabled || isGone))
            leave();
    }

    void tab() override {}
    void timerEvent(int id) override { m_pContext->timerEvent(id); }
    void pause() override {}
    void resume() override {}
    void localeChanged(const std::string&) override {}
    void dateFormatChanged() override {}
    void timeFormatChanged() override {}
    void childGainedFocus(const std::string&) override {}
    void childLostFocus(const std::string&) override {}

private:
    bool isThere() const
    {
        FeatureData feature;
        feature.featureName = content_feature_name_pbxphonebook;
        feature.Action = content_feature_query;
        CSTARequestSystemStatusRequest query(feature);
        if (m_pCalls)
            m_pCalls->sendRequest(query);
        const auto* known = dynamic_cast<CSTARequestSystemStatusResponse*>(query.getResponse());
        return known && known->getSystemStatus() == systemState_enabled &&
               known->getFeatureData().Availability == content_feature_available;
    }

    // The PBX knows: it has closed what is left.
    void leave()
    {
        m_isShown = false;
        getPhoneletHandle()->leave(m_pContext->getName());
    }

    void press(const std::string& button)
    {
        CSTAButtonPressRequest request(button);
        if (m_pCalls)
            m_pCalls->sendRequest(request);
    }

    CSTAServiceIfc* m_pCalls = nullptr;
    std::string m_monitor;
    bool m_isShown = false;
    StimulusScreen m_screen{[this](const std::string& button) { press(button); }};
};

} // namespace

extern "C" __attribute__((visibility("default"))) Phonelet* createPhonelet()
{
    return new CorvanStimulus;
}
