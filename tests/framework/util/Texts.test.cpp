#include <framework/util/AppLog.h>
#include <framework/util/ClientUtils.h>
#include <framework/util/Serializer.h>

#include <testing/LogCapture.h>

#include <gtest/gtest.h>

namespace {

using Pairs = Serializer::Pairs;

TEST(EscapeXml, EscapesWhatXmlReservesAndLeavesOutWhatItForbids)
{
    EXPECT_EQ(ClientUtils::escapeXMLString("A & B <c> \"d\" 'e'"),
              "A &amp; B &lt;c&gt; &quot;d&quot; &apos;e&apos;");
    EXPECT_EQ(ClientUtils::escapeXMLString(std::string{'a', '\0', 'b', '\x01', 'c', '\t', 'd'}), "abc\td");
    EXPECT_EQ(ClientUtils::escapeXMLString("Müller"), "Müller");
}

TEST(Serializer, GivesBackWhatItWasGiven)
{
    const Pairs pairs{{"lastname", "30"}, {"odd=name", "a;b\\c"}, {"empty", ""}};
    Pairs read;
    ASSERT_TRUE(Serializer::deserialize(Serializer::serialize(pairs), read));
    EXPECT_EQ(read, pairs);
}

TEST(Serializer, AppendsToWhatIsThere)
{
    Pairs pairs{{"a", "1"}};
    ASSERT_TRUE(Serializer::deserialize("b=2", pairs));
    EXPECT_EQ(pairs, (Pairs{{"a", "1"}, {"b", "2"}}));
    EXPECT_TRUE(Serializer::deserialize("", pairs));
    EXPECT_EQ(pairs.size(), 2u);
}

TEST(Serializer, RefusesOtherTextAndAppendsNothing)
{
    for (const std::string text : {"name", "a=1;", "a=1=2", "a=1;b", "a=\\"}) {
        Pairs pairs;
        EXPECT_FALSE(Serializer::deserialize(text, pairs)) << text;
        EXPECT_TRUE(pairs.empty()) << text;
    }
}

TEST(AppLog, SaysNothingWithoutASink)
{
    AppLogSink* before = AppLog::setSink(nullptr);
    EXPECT_FALSE(AppLog::isEnabled("PhonebookPhonelet", AppLog::ERROR));
    AppLog::log("PhonebookPhonelet", "./src/Toolbox", AppLog::ERROR, 1, "nobody hears %s", "this");
    AppLog::setSink(before);
}

TEST(AppLog, HandsOnComponentFileLevelAndFormattedText)
{
    const LogCapture log;
    AppLog::log("PhonebookPhonelet", "./src/Toolbox", AppLog::REFUSED, 1, "%d of %s", 3,
                std::string(5000, 'x').c_str());
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.lines()[0].component, "PhonebookPhonelet");
    EXPECT_EQ(log.lines()[0].file, "./src/Toolbox");
    EXPECT_EQ(log.lines()[0].level, 3);
    EXPECT_EQ(log.lines()[0].text, "3 of " + std::string(5000, 'x'));
}

} // namespace
