#include <csignal>

#include <gtest/gtest.h>

#include <testing/LogCapture.h>

#include "LineWatcher.h"
#include "Sipp.h"
#include "TemporaryFolder.h"
#include "calls/sip/SipLine.h"

namespace {

using std::chrono::milliseconds;

class SipCalls : public testing::Test {
protected:
    // In service, and everything it dials goes to `peer`, a port of this machine.
    void useLine(int peer)
    {
        settings.user = "100";
        settings.displayName = "Anna \"A\" Miller";
        settings.outboundProxy = SipHost{"127.0.0.1", peer};
        settings.profile = folder.path();
        settings.port = freePort();
        line = std::make_unique<SipLine>(settings);
        line->setObserver(&watcher);
        ASSERT_TRUE(watcher.isInService(*line));
    }

    TemporaryFolder folder;
    LogCapture log;
    SipSettings settings;
    LineWatcher watcher;
    std::unique_ptr<SipLine> line;
};

} // namespace

TEST_F(SipCalls, RingThenConnectThenEndWhenTheUserHangsUp)
{
    Sipp callee("answers");
    useLine(callee.port);
    ASSERT_TRUE(line->placeCall("1", "201"));
    ASSERT_TRUE(watcher.becomes("1", CallState::Connected));
    line->clearCall("1");
    EXPECT_TRUE(watcher.ends("1", CallState::Null, CallEnd::Cleared));
    EXPECT_EQ(watcher.states("1"), (std::vector{CallState::Alerting, CallState::Connected, CallState::Null}));
    EXPECT_TRUE(callee.succeeds());
    EXPECT_NE(callee.messages().find("INVITE sip:201@127.0.0.1:" + std::to_string(callee.port)),
              std::string::npos);
    EXPECT_NE(callee.messages().find("From: \"Anna \\\"A\\\" Miller\" <sip:100@"), std::string::npos);
}
