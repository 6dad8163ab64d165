// The PBX's own phonebook: whether it is there, and handing the user over to the phonelet that
// shows it. Nothing here is locked.

#pragma once

#include <memory>
#include <string>

namespace DisplayAPI {
class CommandListener;
class PopupNotification;
} // namespace DisplayAPI
class CSTASystemStatusEvent;
class EventContext;
class PhonebookTabs;
class StimulusDisplay;

class PbxPhonebook {
public:
    // `listener` is told when the user has seen that the hand-over failed.
    PbxPhonebook(EventContext& context, PhonebookTabs& tabs, StimulusDisplay& stimulusDisplay,
                 DisplayAPI::CommandListener& listener);
    ~PbxPhonebook();

    // Asks the PBX about a feature, or to act on it. Blocks for its answer.
    bool requestSystemStatus(const std::string& featureName, const std::string& action);
    bool activateMessaging(const std::string& featureName);
    // Hands over to the phonelet of that name, or says that it does not work.
    void activate(const std::string& phoneletName);
    void deleteInfoPopup();
    // Adds and removes the tab as the PBX says.
    void handleSystemStatus(const CSTASystemStatusEvent& event);

private:
    EventContext& m_context;
    PhonebookTabs& m_tabs;
    StimulusDisplay& m_stimulusDisplay;
    DisplayAPI::CommandListener& m_listener;
    std::unique_ptr<DisplayAPI::PopupNotification> m_pInfoPopup;
};
