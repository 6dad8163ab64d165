#include "calls/sip/Netstring.h"

#include <gtest/gtest.h>

using Texts = std::vector<std::string>;

TEST(Netstring, HasItsLengthInOctetsBeforeIt)
{
    EXPECT_EQ(toNetstring("hello"), "5:hello,");
    EXPECT_EQ(toNetstring(""), "0:,");
    EXPECT_EQ(toNetstring("\u00fc"), "2:\u00fc,");
}

TEST(Netstring, IsReadHoweverItArrives)
{
    const std::string stream = "5:hello,0:,3:a,b,";
    const Texts texts{"hello", "", "a,b"};
    EXPECT_EQ(NetstringReader().take(stream), texts);
    NetstringReader byteByByte;
    Texts read;
    for (const char c : stream) {
        const auto some = byteByByte.take({&c, 1});
        ASSERT_TRUE(some);
        read.insert(read.end(), some->begin(), some->end());
    }
    EXPECT_EQ(read, texts);
}

TEST(Netstring, IsReadUpToItsGreatestLength)
{
    const std::string longest(NetstringReader::LONGEST, 'x');
    EXPECT_EQ(NetstringReader().take(toNetstring(longest)), Texts{longest});
    EXPECT_FALSE(NetstringReader().take(toNetstring(longest + 'x')));
}

TEST(Netstring, IsRefusedAsSoonAsItCannotBeOne)
{
    for (const auto* stream :
         {"x", ":", ":,", "5hello,", "-1:,", "+1:a,", " 1:a,", "05:hello,", "00:,", "5:hello;", "1:ab,",
          "4294967297:a,", "99999999999999999999", "1234567", "{\"a\":1}"})
        EXPECT_FALSE(NetstringReader().take(stream)) << stream;
}

TEST(Netstring, IsNotWaitedForAgainAfterGarbage)
{
    NetstringReader reader;
    EXPECT_FALSE(reader.take("5:hello,garbage"));
    EXPECT_FALSE(reader.take("5:hello,"));
}
