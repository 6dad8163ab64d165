// Every journey's file is one test: its screens are those that the telephone shows.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "JourneyPhone.h"

namespace {

constexpr char REBASELINE[] = "REBASELINE_JOURNEYS";

using Strings = std::vector<std::string>;

class Journeys : public testing::TestWithParam<std::filesystem::path> {};

std::string nameOf(const testing::TestParamInfo<std::filesystem::path>& info)
{
    auto name = info.param.stem().string();
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

} // namespace

TEST_P(Journeys, ShowTheirScreens)
{
    const auto written = Journey::read(GetParam());
    auto walked = written;
    {
        JourneyPhone phone(written);
        for (auto& step : walked.steps)
            step.screen = phone.run(step.words);
        EXPECT_EQ(phone.complaints(), Strings{});
    }
    if (std::getenv(REBASELINE)) {
        std::ofstream(GetParam()) << walked.text();
        return;
    }
    EXPECT_EQ(walked.text(), written.text());
}

INSTANTIATE_TEST_SUITE_P(All, Journeys, testing::ValuesIn(allJourneys()), nameOf);

TEST(JourneysAsAWhole, AreComparedAndNotWrittenAnew)
{
    EXPECT_EQ(std::getenv(REBASELINE), nullptr) << "this run wrote the journeys anew";
}

TEST(JourneysAsAWhole, AreThere)
{
    EXPECT_GE(allJourneys().size(), 15U);
}
