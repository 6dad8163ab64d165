#include "PbxPhonebook.h"

#include <framework/PhoneletContext.h>
#include <framework/PhoneletIfc.h>
#include <framework/csta/CSTAEvents.h>
#include <framework/csta/CSTARequests.h>
#include <framework/csta/CSTAServiceIfc.h>
#include <framework/csta/communicationsServiceTexts.h>
#include <framework/display/Display.h>
#include <framework/display/PopupNotification.h>

#include "EventContext.h"
#include "PhonebookLog.h"
#include "PhonebookPhonelet.h"
#include "PhonebookTabs.h"
#include "StimulusDisplay.h"

using namespace communicationsServiceTexts;

namespace {

// Log readers look for these lines under the mode, whose operations they name.
constexpr char nSOURCE[] = "./src/PhonebookMode";

constexpr unsigned nERROR_TIMEOUT = 5000; // ms

} // namespace

PbxPhonebook::PbxPhonebook(EventContext& context, PhonebookTabs& tabs, StimulusDisplay& stimulusDisplay,
                           DisplayAPI::CommandListener& listener)
    : m_context(context)
    , m_tabs(tabs)
    , m_stimulusDisplay(stimulusDisplay)
    , m_listener(listener)
{
}

PbxPhonebook::~PbxPhonebook() = default;

bool PbxPhonebook::requestSystemStatus(const std::string& featureName, const std::string& action)
{
    PB_TRACE("PhonebookMode::processRequestSystemStatusRequest()");
    CSTARequestSystemStatusRequest request(FeatureData{featureName, action, "", "", "", ""});
    if (m_context.m_pCstaService)
        m_context.m_pCstaService->sendRequest(request);
    if (request.getResponseCode() != 0) {
        PB_ERROR("processRequestSystemStatusRequest() - no successful response code");
        return false;
    }
    const auto* pResponse = dynamic_cast<CSTARequestSystemStatusResponse*>(request.getResponse());
    if (!pResponse) {
        PB_ERROR("processRequestSystemStatusRequest() - invalid CSTARequestSystemStatusResponse");
        return false;
    }
    // A PBX that does not speak of its state is in order.
    if (!pResponse->getSystemStatus().empty() && pResponse->getSystemStatus() != systemState_enabled) {
        PB_ERROR("processRequestSystemStatusRequest() - System status is NOT enabled");
        return false;
    }
    return action != content_feature_query ||
           pResponse->getFeatureData().Availability == content_feature_available;
}

bool PbxPhonebook::activateMessaging(const std::string& featureName)
{
    PB_TRACE("PhonebookMode::activateMessaging()");
    return requestSystemStatus(featureName, content_localfeature_activate);
}

void PbxPhonebook::activate(const std::string& phoneletName)
{
    PB_TRACE("activate()");
    if (!m_context.m_pPhoneletHandle)
        return;
    if (activateMessaging(content_feature_name_pbxphonebook)) {
        m_context.m_pPhoneletHandle->push(m_context.m_pPhoneletContext->getName(), phoneletName, 0);
        return;
    }
    PB_ERROR("activate() - failed");
    m_pInfoPopup = std::make_unique<DisplayAPI::PopupNotification>();
    m_pInfoPopup->setText(DisplayAPI::TranslationInfo("StimPhonelet.Error", m_context.m_pTranslator));
    m_pInfoPopup->setTimeout(nERROR_TIMEOUT);
    m_pInfoPopup->setType(DisplayAPI::PopupNotification::STIMULUS_ERROR);
    m_pInfoPopup->setCommandListener(&m_listener);
    m_context.m_pDisplay->setCurrent(m_pInfoPopup.get());
}

void PbxPhonebook::deleteInfoPopup()
{
    PB_TRACE("PhonebookMode::deleteInfoPopup()");
    m_pInfoPopup.reset();
}

void PbxPhonebook::handleSystemStatus(const CSTASystemStatusEvent& event)
{
    const std::string& status = event.getSystemStatus();
    const FeatureData& feature = event.getFeatureData();
    PB_TRACE("handleCSTASystemStatusEvent() - EVENT\n"
             "          ********** FeatureData **********\n"
             "          featureName  = %s\n"
             "          Action       = %s\n"
             "          DeActivation = %s\n"
             "          Status       = %s\n"
             "          Availability = %s\n"
             "          ButtonID     = %s\n",
             feature.featureName.c_str(), feature.Action.c_str(), feature.DeActivation.c_str(),
             feature.Status.c_str(), feature.Availability.c_str(), feature.ButtonID.c_str());

    const bool isPhonebook = feature.featureName == content_feature_name_pbxphonebook;
    if (feature.Status == "OFF" && isPhonebook)
        m_context.m_pPhonelet->clearTreatShowAsTab();

    if (status == systemState_disabled || status == systemState_partiallyDisabled) {
        PB_TRACE("handleCSTASystemStatusEvent() - SystemState DISABLED -> PBX Phonebook NOT available");
        m_tabs.removePbx();
        m_stimulusDisplay.clear(*m_context.m_pDisplay);
    }
    if (!status.empty() || !isPhonebook)
        return;
    if (feature.Availability == content_feature_available) {
        PB_TRACE("handleCSTASystemStatusEvent() - PBX Phonebook available");
        m_tabs.addPbx();
    } else if (feature.Availability == content_feature_unavailable) {
        PB_TRACE("handleCSTASystemStatusEvent() - PBX Phonebook NOT available");
        m_tabs.removePbx();
    }
}
