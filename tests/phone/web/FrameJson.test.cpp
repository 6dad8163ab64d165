#include "web/FrameJson.h"

#include <framework/display/Frame.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using DisplayAPI::Frame;
using DisplayAPI::FrameRole;

nlohmann::json json(const Frame& frame)
{
    return nlohmann::json::parse(toJson(frame, [](const std::string& path) {
        return path == "gone.png" ? std::string() : "/picture/of-" + path;
    }));
}

TEST(FrameJson, HoldsTheVisibleRowsAndHowManyThereAre)
{
    Frame frame;
    frame.base.role = FrameRole::List;
    frame.base.rowCount = 100000;
    frame.base.rows = {{41, 3, "Müller, Jörg", "", true}};

    const auto base = json(frame)["base"];
    EXPECT_EQ(base["role"], "list");
    EXPECT_EQ(base["rowCount"], 100000);
    EXPECT_EQ(base["rows"][0]["position"], 41);
    EXPECT_EQ(base["rows"][0]["icon"], 3);
    EXPECT_EQ(base["rows"][0]["text"], "Müller, Jörg");
    EXPECT_EQ(base["rows"][0]["selected"], true);
}

TEST(FrameJson, ShowsThePopupOnTopOnly)
{
    Frame frame;
    EXPECT_TRUE(json(frame)["popup"].is_null());

    frame.popups.resize(2);
    frame.popups[0].role = FrameRole::Menu;
    frame.popups[1].role = FrameRole::Question;
    frame.popups[1].text = "Delete?";
    EXPECT_EQ(json(frame)["popup"]["role"], "question");
    EXPECT_EQ(json(frame)["popup"]["text"], "Delete?");
}

TEST(FrameJson, TellsWhereOnTheFormAFieldIs)
{
    Frame frame;
    frame.base.role = FrameRole::Form;
    frame.base.rowCount = 15;
    auto& field = frame.base.fields.emplace_back();
    field.kind = DisplayAPI::FrameField::Kind::Number;
    field.position = 9;
    field.cursor = 2;
    field.maxLength = 40;

    const auto json = ::json(frame)["base"]["fields"][0];
    EXPECT_EQ(json["kind"], "number");
    EXPECT_EQ(json["position"], 9);
    EXPECT_EQ(json["cursor"], 2);
    EXPECT_EQ(json["maxLength"], 40);
}

TEST(FrameJson, TellsWhichLettersTheDigitKeysEnterAsTelephonesWriteThem)
{
    using Letters = DisplayAPI::FrameField::Letters;
    for (const auto& [letters, written] :
         {std::pair(Letters::Words, "Abc"), {Letters::Small, "abc"}, {Letters::Capitals, "ABC"}}) {
        Frame frame;
        frame.base.role = FrameRole::Form;
        frame.base.fields.emplace_back().letters = letters;
        EXPECT_EQ(json(frame)["base"]["fields"][0]["letters"], written);
    }
}

TEST(FrameJson, HoldsTheTelephonesOwnSigns)
{
    Frame frame;
    frame.signs.dialPad = true;
    EXPECT_EQ(json(frame)["signs"]["dialPad"], true);
    EXPECT_EQ(json(frame)["signs"]["offHook"], false);
}

TEST(FrameJson, ReplacesWhatIsNoUtf8)
{
    Frame frame;
    frame.base.title = "a\xFF"
                       "b";
    EXPECT_EQ(json(frame)["base"]["title"], "a\xEF\xBF\xBD"
                                            "b");
}

TEST(FrameJson, HasAddressesForPictures)
{
    Frame frame;
    frame.base.role = FrameRole::Form;
    frame.base.rows = {{0, 0, "Anna", "anna.png", true}, {1, 0, "Bert", "", false}};
    frame.base.fields.resize(2);
    frame.base.fields[0].image = "gone.png";
    frame.base.fields[1].image = "anna.png";
    frame.popups.resize(1);
    frame.popups[0].role = FrameRole::Menu;
    frame.popups[0].image = "anna.png";

    const auto sent = json(frame);
    EXPECT_EQ(sent["base"]["image"], "");
    EXPECT_EQ(sent["base"]["imageLost"], false);
    EXPECT_EQ(sent["base"]["rows"][0]["image"], "/picture/of-anna.png");
    EXPECT_EQ(sent["base"]["rows"][0]["imageLost"], false);
    EXPECT_EQ(sent["base"]["rows"][1]["image"], "");
    EXPECT_EQ(sent["base"]["rows"][1]["imageLost"], false);
    EXPECT_EQ(sent["base"]["fields"][0]["image"], "");
    EXPECT_EQ(sent["base"]["fields"][0]["imageLost"], true);
    EXPECT_EQ(sent["base"]["fields"][1]["image"], "/picture/of-anna.png");
    EXPECT_EQ(sent["popup"]["image"], "/picture/of-anna.png");
}

} // namespace
