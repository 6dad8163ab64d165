#include "PhonebookScreens.h"

namespace {

class FatalError : public PhonebookScreens {};

} // namespace

TEST_F(FatalError, IgnoresEverything)
{
    contact("Miller", "Jane", {{"Office", "1"}});
    start();
    auto& state = context().m_FatalError;
    state.enterStateEvent(&context());
    context().m_pCurrentState = &state;
    const auto before = host.screen();
    press(OK);
    press(MENU);
    press(BACK);
    dialingStarts("1");
    EXPECT_EQ(host.screen(), before);
    EXPECT_EQ(calls(), Texts{});
    EXPECT_EQ(handle.left, Texts{});
    EXPECT_FALSE(state.tabValid(&context()));
    EXPECT_EQ(mode().getCurrentState(), &state);
    state.exitStateEvent(&context());
    EXPECT_TRUE(log.has("PhonebookStateFatalError::enterStateEvent()", 5));
    EXPECT_TRUE(log.has("PhonebookStateFatalError::exitStateEvent()", 5));
}
