// A call control that keeps what it was sent and answers as the test says.

#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <framework/csta/CSTARequests.h>
#include <framework/csta/CSTAServiceIfc.h>
#include <framework/csta/communicationsServiceTexts.h>

class FakeCstaService final : public CSTAServiceIfc {
public:
    std::vector<std::string> sent; // "MakeCall +4930123", "MonitorStart localDeviceID", ...
    std::vector<Executable*> sources;
    int makeCallResult = 0;
    int makeCallCause = 0; // the cause with a result that is not 0
    int pickupResult = 0;
    int monitorStartResult = 0;
    int monitorStopResult = 0;
    int systemStatusResult = 0;
    int featureResult = 0;
    std::string crossRefId = "monitor-1";
    std::string systemStatus;
    FeatureData feature{communicationsServiceTexts::content_feature_name_pbxphonebook, "", "", "",
                        communicationsServiceTexts::content_feature_unavailable,       ""};
    // When set, answers in place of the above.
    std::function<void(CSTARequest&)> answer;
    CSTAMonitorFilter filter;

    void sendRequest(CSTARequest& request) override
    {
        sources.push_back(request.getSourceService());
        sent.push_back(describe(request));
        if (answer)
            answer(request);
        else
            answerAsSet(request);
    }

private:
    std::string describe(CSTARequest& request)
    {
        if (auto* monitor = dynamic_cast<CSTAMonitorStartRequest*>(&request)) {
            filter = monitor->getFilter();
            return "MonitorStart " + monitor->getDeviceObject();
        }
        if (auto* stop = dynamic_cast<CSTAMonitorStopRequest*>(&request))
            return "MonitorStop " + stop->getMonitorCrossRefID();
        if (dynamic_cast<CSTASystemStatusRequest*>(&request))
            return "SystemStatus";
        if (auto* status = dynamic_cast<CSTARequestSystemStatusRequest*>(&request))
            return "RequestSystemStatus " + status->getFeatureData().featureName + " " +
                   status->getFeatureData().Action;
        if (auto* call = dynamic_cast<CSTAMakeCallRequest*>(&request))
            return "MakeCall " + call->getCalledDevice() +
                   (call->getCallingDevice().empty() ? "" : " from " + call->getCallingDevice());
        if (auto* pickup = dynamic_cast<CSTADirectedPickupCallRequest*>(&request))
            return "DirectedPickup " + pickup->getCallToBePickedUp() +
                   (pickup->getRequestingDeviceID().empty() ? "" : " by " + pickup->getRequestingDeviceID());
        if (auto* snapshot = dynamic_cast<CSTASnapshotDeviceRequest*>(&request))
            return "Snapshot " + snapshot->getDevice();
        return "?";
    }
    void answerAsSet(CSTARequest& request)
    {
        if (dynamic_cast<CSTAMonitorStartRequest*>(&request))
            request.setResponse(monitorStartResult, std::make_unique<CSTAMonitorStartResponse>(crossRefId));
        else if (dynamic_cast<CSTAMonitorStopRequest*>(&request))
            request.setResponse(monitorStopResult, std::make_unique<CSTAMonitorStopResponse>());
        else if (dynamic_cast<CSTASystemStatusRequest*>(&request))
            request.setResponse(systemStatusResult, std::make_unique<CSTASystemStatusResponse>());
        else if (dynamic_cast<CSTARequestSystemStatusRequest*>(&request))
            request.setResponse(featureResult,
                                std::make_unique<CSTARequestSystemStatusResponse>(systemStatus, feature));
        else if (dynamic_cast<CSTAMakeCallRequest*>(&request) && makeCallResult != 0)
            request.setResponse(makeCallResult, std::make_unique<CSTAErrorCode>(makeCallCause));
        else if (dynamic_cast<CSTAMakeCallRequest*>(&request))
            request.setResponse(0, std::make_unique<CSTAMakeCallResponse>("call-1"));
        else if (dynamic_cast<CSTADirectedPickupCallRequest*>(&request))
            request.setResponse(pickupResult, nullptr);
        else
            request.setResponse(0, std::make_unique<CSTASnapshotDeviceResponse>(std::vector<int>{}));
    }
};
