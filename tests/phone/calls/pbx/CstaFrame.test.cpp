#include "calls/pbx/CstaFrame.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;

std::string octets(const CstaFrame& frame)
{
    const auto made = octetsOf(frame);
    return made ? made.value() : "error";
}

// The next message as "id xml"; "" while there is none.
std::string next(CstaFrameReader& reader)
{
    const auto frame = reader.next();
    if (!frame)
        return "error";
    return frame.value() ? std::to_string(frame.value()->invokeId) + " " + frame.value()->xml : "";
}

} // namespace

TEST(CstaFrame, HasItsWholeLengthAndFourDigits)
{
    EXPECT_EQ(octets({1, std::string(227, 'x')}), "\0\0\0\xEB"s + "0001" + std::string(227, 'x'));
    EXPECT_EQ(octets({CstaFrame::GREATEST_REQUEST_ID, "<a/>"}), "\0\0\0\x0C"s + "9998<a/>");
    EXPECT_EQ(octets({CstaFrame::EVENT_ID, std::string(300, 'x')}).substr(0, 8), "\0\0\x01\x34"s + "9999");
}

TEST(CstaFrame, IsNoLargerThanItsLengthCanSay)
{
    EXPECT_EQ(octets({0, std::string(65527, 'x')}).substr(0, 8), "\0\0\xFF\xFF"s + "0000");
    EXPECT_EQ(octets({0, std::string(65528, 'x')}), "error");
    EXPECT_EQ(octets({10000, "<a/>"}), "error");
    EXPECT_EQ(octets({-1, "<a/>"}), "error");
}

TEST(CstaFrameReader, WaitsForAWholeMessage)
{
    CstaFrameReader reader;
    const auto message = octets({7, "<MonitorStopResponse/>"});
    for (const char c : message) {
        EXPECT_EQ(next(reader), "");
        reader.append(std::string(1, c));
    }
    EXPECT_EQ(next(reader), "7 <MonitorStopResponse/>");
    EXPECT_EQ(next(reader), "");
}

TEST(CstaFrameReader, TellsMessagesApartThatCameTogether)
{
    CstaFrameReader reader;
    const std::string greatest(65527, 'x');
    reader.append(octets({1, "<a/>"}) + octets({2, greatest}) + octets({9999, "<b/>"}) + octets({3, ""}));
    EXPECT_EQ(next(reader), "1 <a/>");
    EXPECT_EQ(next(reader), "2 " + greatest);
    EXPECT_EQ(next(reader), "9999 <b/>");
    EXPECT_EQ(next(reader), "3 ");
    EXPECT_EQ(next(reader), "");
}

TEST(CstaFrameReader, GivesUpWhatIsNoMessage)
{
    for (const auto& garbage :
         {"HTTP/1.1 400 Bad Request\r\n"s, "\0\1\0\x0C"s + "0001<a/>", "\0\0\0\x07"s + "0001",
          "\0\0\0\0"s + "0001", "\0\0\0\x0C\0\0\0\1<a/>"s, "\0\0\0\x0C"s + " 001<a/>"}) {
        CstaFrameReader reader;
        reader.append(garbage);
        EXPECT_EQ(next(reader), "error") << garbage;
    }
}
