#include "calls/pbx/CstaMessages.h"

#include <gtest/gtest.h>

#include "calls/pbx/CstaFrame.h"

namespace {

std::string written(const CstaElement& message)
{
    auto xml = writeCsta(message);
    const auto declaration = xml.find("?>") + 2;
    const std::string space = " xmlns=\"" + std::string(CSTA_NAMESPACE) + "\"";
    xml.erase(0, declaration);
    const auto at = xml.find(space);
    return at == std::string::npos ? "no namespace" : xml.erase(at, space.size());
}

// `xml` without its namespace, which goes into the outermost element.
CstaElement message(const std::string& xml)
{
    const auto name = xml.find_first_of(" />", 1);
    const auto read = readCsta(xml.substr(0, name) + " xmlns=\"" + CSTA_NAMESPACE + "\"" + xml.substr(name));
    return read ? read.value() : CstaElement{read.error().sentence};
}

template <typename Content> Content eventOf(const std::string& xml)
{
    const auto content = eventIn(message(xml));
    const auto* wanted = std::get_if<Content>(&content);
    return wanted ? *wanted : Content{};
}

bool meansNothing(const std::string& xml)
{
    return std::holds_alternative<std::monostate>(eventIn(message(xml)));
}

std::string rowsOf(const std::string& xml)
{
    std::string all;
    for (const auto& row : eventOf<CstaDisplayRows>(xml))
        all += row.displayId + " " + std::to_string(row.row) + "<" + row.text + ">";
    return all;
}

const std::string PRIVATE = "<privateData><private><p:displayRow xmlns:p=\"urn:deskbook:csta:1\">"
                            "<p:displayID>Display</p:displayID><p:row>2</p:row><p:text>Miller</p:text>"
                            "</p:displayRow></private></privateData>";

} // namespace

TEST(CstaMessages, AreWrittenInTheOrderOfTheSchema)
{
    EXPECT_EQ(written(monitorStart("100")),
              "<MonitorStart><monitorObject><deviceObject>100</deviceObject></monitorObject>"
              "<monitorType>device</monitorType></MonitorStart>");
    EXPECT_EQ(written(makeCall("100", "+49301234567")),
              "<MakeCall><callingDevice>100</callingDevice><calledDirectoryNumber>+49301234567"
              "</calledDirectoryNumber><autoOriginate>doNotPrompt</autoOriginate></MakeCall>");
    EXPECT_EQ(written(directedPickupCall({"7", "201"}, "100")),
              "<DirectedPickupCall><callToBePickedUp><callID>7</callID><deviceID>201</deviceID>"
              "</callToBePickedUp><requestingDevice>100</requestingDevice></DirectedPickupCall>");
    EXPECT_EQ(written(snapshotDevice("201")),
              "<SnapshotDevice><snapshotObject>201</snapshotObject></SnapshotDevice>");
    EXPECT_EQ(written(answerCall({"7", "100"})),
              "<AnswerCall><callToBeAnswered><callID>7</callID><deviceID>100</deviceID></callToBeAnswered>"
              "</AnswerCall>");
    EXPECT_EQ(written(clearConnection({"7", "100"})),
              "<ClearConnection><connectionToBeCleared><callID>7</callID><deviceID>100</deviceID>"
              "</connectionToBeCleared></ClearConnection>");
    EXPECT_EQ(written(buttonPress("100", "ok")),
              "<ButtonPress><device>100</device><button>ok</button></ButtonPress>");
    EXPECT_EQ(written(emptyResponse("SystemStatusResponse")), "<SystemStatusResponse/>");
    EXPECT_EQ(
        written(systemStatusResponse("normal")),
        "<RequestSystemStatusResponse><systemStatus>normal</systemStatus></RequestSystemStatusResponse>");
    EXPECT_EQ(written(operationError("serviceNotSupported")),
              "<CSTAErrorCode><operation>serviceNotSupported</operation></CSTAErrorCode>");
}

TEST(CstaMessages, AreSentAsTheDescriptionOfTheFormatShows)
{
    const auto octets = octetsOf({3, writeCsta(makeCall("100", "4711"))});
    ASSERT_TRUE(octets);
    EXPECT_EQ(octets.value().substr(0, 8), std::string("\0\0\x01\x08\x30\x30\x30\x33", 8));
    EXPECT_EQ(octets.value().size(), 264U);
}

TEST(CstaMessages, CarryTheFeatureAsPrivateData)
{
    FeatureData feature;
    feature.featureName = "PBXPhonebook";
    feature.Action = "query";
    const auto request = requestSystemStatus(feature);
    EXPECT_EQ(written(request),
              "<RequestSystemStatus><extensions><privateData><private><feature "
              "xmlns=\"urn:deskbook:csta:1\"><featureName>PBXPhonebook</featureName><Action>query</Action>"
              "</feature></private></privateData></extensions></RequestSystemStatus>");
    const auto read = systemStatusIn(request);
    ASSERT_TRUE(read.feature);
    EXPECT_EQ(read.feature->featureName, "PBXPhonebook");
    EXPECT_EQ(read.feature->Action, "query");
    EXPECT_EQ(read.feature->Availability, "");
}

TEST(CstaMessages, NameTheErrorOfEveryGroup)
{
    for (const auto* group : {"operation", "security", "stateIncompatibility", "systemResourceAvailibility",
                              "subscribedResourceAvailability", "performanceManagement", "privateData",
                              "privateErrorCode", "unspecified"}) {
        const std::string name = group;
        const auto error =
            errorIn(message("<CSTAErrorCode><" + name + ">generic</" + name + "></CSTAErrorCode>"));
        ASSERT_TRUE(error) << name;
        EXPECT_EQ(error->group, name);
        EXPECT_EQ(error->value, "generic");
    }
    EXPECT_EQ(errorIn(message("<CSTAErrorCode/>"))->group, "unspecified");
    EXPECT_FALSE(errorIn(message("<MakeCallResponse/>")));
}

TEST(CstaMessages, HaveConnectionsInEitherOrder)
{
    for (const auto* xml :
         {"<c><callID>7</callID><deviceID>100</deviceID></c>",
          "<c><deviceID typeOfNumber=\"dialingNumber\">100</deviceID><callID>7</callID></c>"}) {
        const auto connection = connectionIn(message(xml));
        EXPECT_EQ(connection.callId, "7");
        EXPECT_EQ(connection.deviceId, "100");
    }
}

TEST(CstaMessages, TellTheCallsAtADevice)
{
    const auto info = [](const std::string& call, const std::string& state) {
        return "<snapshotDeviceResponseInfo><connectionIdentifier><deviceID>201</deviceID><callID>" + call +
               "</callID></connectionIdentifier><localCallState>" + state +
               "</localCallState></snapshotDeviceResponseInfo>";
    };
    const auto calls = callsIn(message(
        "<SnapshotDeviceResponse><crossRefIDorSnapshotData><snapshotData>" +
        info(
            "1",
            "<compoundCallState><localConnectionState>connected</localConnectionState></compoundCallState>") +
        info("2",
             "<compoundCallState><localConnectionState>alerting</localConnectionState></compoundCallState>") +
        info("3", "<simpleCallState>callReceived</simpleCallState>") + info("4", "<unknown/>") +
        "</snapshotData></crossRefIDorSnapshotData></SnapshotDeviceResponse>"));
    ASSERT_EQ(calls.size(), 4U);
    EXPECT_EQ(calls[1].connection.callId, "2");
    EXPECT_EQ(calls[1].connection.deviceId, "201");
    EXPECT_FALSE(calls[0].rings);
    EXPECT_TRUE(calls[1].rings);
    EXPECT_TRUE(calls[2].rings);
    EXPECT_FALSE(calls[3].rings);
    EXPECT_TRUE(callsIn(message("<SnapshotDeviceResponse><crossRefIDorSnapshotData><serviceCrossRefID>9"
                                "</serviceCrossRefID></crossRefIDorSnapshotData></SnapshotDeviceResponse>"))
                    .empty());
}

TEST(CstaEvent, OfACallSaysWhoAndWhy)
{
    const auto failed = eventOf<CstaCallEvent>(
        "<FailedEvent><monitorCrossRefID>m1</monitorCrossRefID><failedConnection><callID>7</callID>"
        "<deviceID>100</deviceID></failedConnection><failingDevice><deviceIdentifier>201</deviceIdentifier>"
        "</failingDevice><callingDevice><deviceIdentifier>100</deviceIdentifier></callingDevice>"
        "<calledDevice><notKnown/></calledDevice><cause>busy</cause></FailedEvent>");
    EXPECT_EQ(failed.kind, CstaCallEvent::Kind::Failed);
    EXPECT_EQ(failed.connection.callId, "7");
    EXPECT_EQ(failed.connection.deviceId, "100");
    EXPECT_EQ(failed.device, "201");
    EXPECT_EQ(failed.calling, "100");
    EXPECT_EQ(failed.cause, "busy");
}

TEST(CstaEvent, IsUnderstoodInAnotherOrder)
{
    const auto delivered = eventOf<CstaCallEvent>(
        "<DeliveredEvent><cause>newCall</cause><callingDevice><restricted/></callingDevice><unknown/>"
        "<alertingDevice><deviceIdentifier>100</deviceIdentifier></alertingDevice>"
        "<connection><deviceID>100</deviceID><callID>8</callID></connection></DeliveredEvent>");
    EXPECT_EQ(delivered.kind, CstaCallEvent::Kind::Delivered);
    EXPECT_EQ(delivered.connection.callId, "8");
    EXPECT_EQ(delivered.device, "100");
    EXPECT_EQ(delivered.calling, "");
}

TEST(CstaEvent, ThatIsUnknownOrLacksItsPartsMeansNothing)
{
    EXPECT_TRUE(meansNothing("<TeleportedEvent/>"));
    EXPECT_TRUE(meansNothing("<DeliveredEvent/>"));
    EXPECT_TRUE(meansNothing("<EstablishedEvent><establishedConnection><deviceID>100</deviceID>"
                             "</establishedConnection></EstablishedEvent>"));
    EXPECT_TRUE(meansNothing("<PrivateEvent/>"));
    EXPECT_TRUE(
        meansNothing("<PrivateEvent><privateData><string>00FF</string></privateData></PrivateEvent>"));
    EXPECT_TRUE(meansNothing("<SystemStatus/>"));
    EXPECT_TRUE(meansNothing("<DisplayUpdatedEvent/>"));
    EXPECT_TRUE(
        meansNothing("<DisplayUpdatedEvent><logicalRows>2</logicalRows><logicalColumns>-1"
                     "</logicalColumns><contentsOfDisplay>a</contentsOfDisplay></DisplayUpdatedEvent>"));
}

TEST(CstaEvent, OfADisplayRowComesInEitherPrivateForm)
{
    EXPECT_EQ(rowsOf("<PrivateEvent>" + PRIVATE + "</PrivateEvent>"), "Display 2<Miller>");
    EXPECT_EQ(rowsOf("<DisplayUpdatedEvent><logicalRows>6</logicalRows><logicalColumns>24</logicalColumns>"
                     "<contentsOfDisplay>all of it</contentsOfDisplay><extensions>" +
                     PRIVATE + "</extensions></DisplayUpdatedEvent>"),
              "Display 2<Miller>");
}

TEST(CstaEvent, OfADisplayRowHasANumberAndNoMoreTextThanADisplay)
{
    const auto row = [](const std::string& number, const std::string& text) {
        return rowsOf(
            "<PrivateEvent><privateData><private><displayRow xmlns=\"urn:deskbook:csta:1\"><displayID>"
            "Display</displayID><row>" +
            number + "</row><text>" + text + "</text></displayRow></private></privateData></PrivateEvent>");
    };
    EXPECT_EQ(row("7", "beyond"), "Display 7<beyond>");
    EXPECT_EQ(row("\n  3\t", "  between blanks  "), "Display 3<  between blanks  >");
    for (const auto* none : {"-1", "", " ", "x", "3x", "3 4", "99999999999"})
        EXPECT_EQ(row(none, "nowhere"), "") << none;
    std::string wide;
    for (int i = 0; i < 300; ++i)
        wide += "ü";
    EXPECT_EQ(row("0", wide), "Display 0<" + wide.substr(0, 512) + ">");
}

TEST(CstaEvent, OfAWholeDisplayIsCutIntoRows)
{
    const auto whole = [](const std::string& rows, const std::string& columns, const std::string& contents) {
        return "<DisplayUpdatedEvent><displayID>1</displayID><logicalRows>" + rows +
               "</logicalRows><logicalColumns>" + columns + "</logicalColumns><contentsOfDisplay>" +
               contents + "</contentsOfDisplay></DisplayUpdatedEvent>";
    };
    EXPECT_EQ(rowsOf(whole("2", "6", "Müller0815")), "Display 0<Müller>Display 1<0815>");
    // Rows from the last empty one up, so that each cuts off what is below it; then the others.
    EXPECT_EQ(rowsOf(whole("4", "2", "a   b ")), "Display 3<>Display 1<>Display 0<a>Display 2<b>");
    EXPECT_EQ(eventOf<CstaDisplayRows>(whole("2000000000", "1", "abc")).size(), 24U);
    EXPECT_EQ(rowsOf(whole("x", "6", "abc")), "");
    EXPECT_EQ(rowsOf(whole("2", "300", std::string(300, 'a') + "b")),
              "Display 0<" + std::string(256, 'a') + ">Display 1<b>");
}

TEST(CstaEvent, OfTheSystemMaySpeakOfItsStateOrAFeature)
{
    EXPECT_EQ(eventOf<CstaSystemStatus>("<SystemStatus><systemStatus>disabled</systemStatus></SystemStatus>")
                  .status,
              "disabled");
    const auto feature = eventOf<CstaSystemStatus>(
        "<PrivateEvent><privateData><private><feature xmlns=\"urn:deskbook:csta:1\"><Availability>available"
        "</Availability><featureName>PBXPhonebook</featureName></feature></private></privateData></"
        "PrivateEvent>");
    EXPECT_EQ(feature.status, "");
    ASSERT_TRUE(feature.feature);
    EXPECT_EQ(feature.feature->featureName, "PBXPhonebook");
    EXPECT_EQ(feature.feature->Availability, "available");
}
