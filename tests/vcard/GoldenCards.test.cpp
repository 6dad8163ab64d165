// Whole files in the style of the programs that export address books.
//
// NAME.jsonl beside NAME.vcf is what reading it gives. DESKBOOK_REBASELINE=1 writes these
// files anew; the tests fail then, so that it is not left on.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "VcardTest.h"

namespace {

namespace fs = std::filesystem;

const fs::path nFOLDER = fs::path(TEST_DATA_DIR) / "vcards";

std::string contentOf(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> cardFiles()
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(nFOLDER)) {
        if (entry.path().extension() == ".vcf")
            names.push_back(entry.path().stem());
    }
    std::sort(names.begin(), names.end());
    return names;
}

// What the phone has of a contact, apart from the kept card and where it stood.
Json fieldsOf(Json object)
{
    for (const char* other : {"line", "end", "card", "notShown", "problems"})
        object.erase(other);
    return object;
}

std::vector<Json> usable(std::vector<Json> objects)
{
    std::erase_if(objects, [](const Json& object) { return object.contains("invalid"); });
    return objects;
}

class GoldenCards : public testing::TestWithParam<std::string> {
protected:
    fs::path input() const { return nFOLDER / (GetParam() + ".vcf"); }
    fs::path expected() const { return nFOLDER / (GetParam() + ".jsonl"); }
};

class RoundTrip : public testing::TestWithParam<std::tuple<std::string, vcard::Version>> {};

} // namespace

TEST_P(GoldenCards, ReadAsExpected)
{
    const auto run = parseText(contentOf(input()));
    if (std::getenv("DESKBOOK_REBASELINE") != nullptr) {
        std::ofstream(expected(), std::ios::binary) << run.out;
        FAIL() << "wrote " << expected();
    }
    EXPECT_EQ(run.outcome, vcard::Outcome::Done);
    EXPECT_EQ(run.out, contentOf(expected()));
}

INSTANTIATE_TEST_SUITE_P(Files, GoldenCards, testing::ValuesIn(cardFiles()), [](const auto& file) {
    auto name = file.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST_P(RoundTrip, KeepsFieldsAndWhatIsNotShown)
{
    const auto& [name, version] = GetParam();
    const auto before = usable(jsonLines(parseText(contentOf(nFOLDER / (name + ".vcf"))).out));
    std::string lines;
    for (const auto& object : before)
        lines += object.dump() + "\n";

    const auto after = jsonLines(parseText(writeRecords(lines, version).out).out);

    ASSERT_EQ(after.size(), before.size());
    for (std::size_t i = 0; i < before.size(); ++i) {
        EXPECT_EQ(fieldsOf(after[i]), fieldsOf(before[i]));
        EXPECT_EQ(after[i]["notShown"].size(), before[i]["notShown"].size()) << after[i]["notShown"];
        EXPECT_EQ(after[i]["problems"], Json::array());
    }
}

INSTANTIATE_TEST_SUITE_P(Versions, RoundTrip,
                         testing::Combine(testing::ValuesIn(cardFiles()),
                                          testing::Values(vcard::Version::V21, vcard::Version::V30,
                                                          vcard::Version::V40)));
