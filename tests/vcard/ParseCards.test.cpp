#include "VcardTest.h"

namespace {

std::string cards(int count)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += "BEGIN:VCARD\r\nVERSION:3.0\r\nN:Name;" + std::to_string(i) + "\r\nEND:VCARD\r\n";
    return text;
}

// A picture's first bytes, then as many as the phone is asked to take.
std::string picture(std::size_t base64Characters)
{
    return "iVBORw0KGgo" + std::string(base64Characters - 11, 'A');
}

} // namespace

TEST(ParseCards, RefusesAFileWithoutCards)
{
    const auto run = parseText("Name,Telephone\nSmith,+1 212 555 0170\n");

    EXPECT_EQ(run.outcome, vcard::Outcome::NotACardFile);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.errors, "This is not a vCard file: it has no line BEGIN:VCARD.\n");
}

TEST(ParseCards, GivesOneLineForEachCardInOrder)
{
    const auto objects = jsonLines(parseText(cards(3)).out);

    ASSERT_EQ(objects.size(), 3u);
    EXPECT_EQ(objects[2]["firstname"], "2");
    EXPECT_EQ(objects[2]["line"], 9);
}

TEST(ParseCards, KeepsLinesTogetherAcrossReadBlocks)
{
    const auto objects = jsonLines(parseText(cards(5000)).out);

    ASSERT_EQ(objects.size(), 5000u);
    for (std::size_t i = 0; i < objects.size(); ++i)
        ASSERT_EQ(objects[i]["firstname"], std::to_string(i));
}

TEST(ParseCards, DropsAPictureBeyondTheLimitAndKeepsTheCard)
{
    vcard::Limits limits;
    limits.photoBytes = 3 * 1024 * 1024;

    const auto kept = parseProperties("N:Small\nPHOTO;ENCODING=b:" + picture(4 * 1024 * 1024) + "\n", limits);
    const auto card =
        parseProperties("N:Large\nPHOTO;ENCODING=b:" + picture(4 * 1024 * 1024 + 4) + "\n", limits);
    const auto huge = parseProperties("N:Huge\nPHOTO;ENCODING=b:" + picture(8 * 1024 * 1024) + "\n", limits);

    EXPECT_FALSE(kept["photo"].is_null());
    EXPECT_TRUE(card["photo"].is_null());
    EXPECT_EQ(card["surname"], "Large");
    EXPECT_EQ(card["problems"], Json({"line 3: PHOTO: larger than 3 MB; property ignored"}));
    EXPECT_EQ(huge["problems"], Json({"line 3: PHOTO: longer than the phone takes; property ignored"}));
}

TEST(ParseCards, DropsATextBeyondTheLimit)
{
    vcard::Limits limits;
    limits.textBytes = 2000;

    const auto card = parseProperties("N:Long\nNOTE:" + std::string(3000, 'x') + "\nTITLE:Poet\n", limits);

    EXPECT_EQ(card["jobFunction"], "Poet");
    EXPECT_EQ(card["problems"], Json({"line 3: NOTE: longer than the phone takes; property ignored"}));
}

TEST(ParseCards, DropsWhatExceedsTheSizeOfACard)
{
    vcard::Limits limits;
    limits.cardBytes = 100;

    const auto card = parseProperties("N:Heavy\nNOTE:" + std::string(200, 'x') + "\nTITLE:Poet\n", limits);

    EXPECT_EQ(card["jobFunction"], "Poet");
    EXPECT_EQ(card["problems"],
              Json({"line 1: the card is larger than the phone takes; some of its properties are ignored"}));
}

TEST(ParseCards, SaysWhenTheFileIsTooLarge)
{
    vcard::Limits limits;
    limits.fileBytes = 64 * 1024;

    const auto run = parseText(cards(5000), limits);

    EXPECT_EQ(run.outcome, vcard::Outcome::Failed);
    EXPECT_NE(run.errors.find("larger than"), std::string::npos);
    EXPECT_TRUE(jsonLines(run.out).back().contains("invalid")); // cut inside a card
}

TEST(ParseCards, ReadsAnUnknownPictureAsNone)
{
    const auto card = parseProperties("N:Odd\nPHOTO;ENCODING=b:AAAAAAAAAAAA\n");

    EXPECT_TRUE(card["photo"].is_null());
    EXPECT_EQ(card["notShown"], Json({"PHOTO"}));
    EXPECT_EQ(card["problems"], Json({"line 1: PHOTO: not a picture the phone can show"}));
}

TEST(ParseCards, ComposesLetters)
{
    EXPECT_EQ(parseProperties("N:Mu\xCC\x88ller\n")["surname"], "M\xC3\xBCller");
}

TEST(ParseCards, ReadsUnlabelledWesternBytes)
{
    EXPECT_EQ(parseProperties("N:M\xFCller \x80\n")["surname"], "M\xC3\xBCller \xE2\x82\xAC");
}

TEST(ParseCards, TakesAStrayEqualsSignForTheEndOfTheText)
{
    const auto card = parseProperties("VERSION:2.1\nNOTE;ENCODING=QUOTED-PRINTABLE:text=\nN:Kept;Name\n");

    EXPECT_EQ(card["surname"], "Kept");
    EXPECT_EQ(card["notShown"], Json({"NOTE: text"}));
}

TEST(ParseCards, ReadsATextThatLooksLikeAPropertyAfterALineEnd)
{
    const auto card = parseProperties(
        "VERSION:2.1\nN:A\nNOTE;ENCODING=QUOTED-PRINTABLE:Home=0D=0A=\nTEL:555\nTITLE:Poet\n");

    EXPECT_EQ(card["notShown"], Json({"NOTE: Home TEL:555"}));
    EXPECT_EQ(card["office"], "");
}

TEST(ParseCards, LeavesAnyFileWithEveryPrefixOfACardAlive)
{
    const std::string card =
        "BEGIN:VCARD\r\nVERSION:2.1\r\nitem1.N;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:=C3=\r\n"
        "=BC;x\r\nPHOTO;ENCODING=BASE64:\r\n AAAA\r\n\r\nTEL;TYPE=\"a,b\":1\r\n";
    for (std::size_t length = 0; length < card.size(); ++length) {
        for (const auto& object : jsonLines(parseText(card.substr(0, length)).out))
            EXPECT_TRUE(object.contains("invalid"));
    }
}
