// The telephone follows its configuration of the corporate directory.

#include <gtest/gtest.h>

#include <framework/services/Utils.h>

#include "../TemporaryFolder.h"
#include "Slapd.h"
#include "app/Phone.h"

namespace {

class PhoneInACompany : public testing::Test {
protected:
    PhoneInACompany()
    {
        std::filesystem::create_directory(server / "authority");
        std::filesystem::create_directory(server / "slapd");
        authority = std::make_unique<TestAuthority>(server / "authority");
        SlapdOptions options;
        options.people = person("Miller", "Ann", "telephoneNumber: 030 1234567\n");
        options.certificate = authority->issue();
        slapd = std::make_unique<Slapd>(server / "slapd", options);

        PhoneOptions phoneOptions;
        phoneOptions.profile = Profile::in(profile.path());
        phoneOptions.clock = &clock;
        phone = Phone::create(std::move(phoneOptions)).value();
        phone->start();
        phone->runPending();
    }
    ~PhoneInACompany() override { phone->stop(); }

    void administratorWrites(const std::string& text)
    {
        profile.write("config.toml", text);
        phone->reloadConfiguration();
        phone->runPending();
    }
    std::string configuration() const
    {
        return "ldap-servers = [\"" + slapd->uri() + "\"]\nldap-base = \"" + Slapd::base() +
               "\"\nldap-ca-file = \"" + authority->file().string() + "\"\n";
    }
    DirectoryStatus search(const AttributeList& pairs)
    {
        PhonebookSearchCriteria criteria(pairs, "", true);
        PhonebookSearchResults results;
        return phone->services().directory().search(criteria, results, true);
    }
    DirectoryStatus search() { return search({{Utils::SURNAME, "mil*"}}); }

    TemporaryFolder server{std::filesystem::temp_directory_path()};
    TemporaryFolder profile;
    std::unique_ptr<TestAuthority> authority;
    std::unique_ptr<Slapd> slapd;
    ManualClock clock;
    std::unique_ptr<Phone> phone;
};

} // namespace

TEST_F(PhoneInACompany, AsksItsDirectoryAsSoonAsItIsConfigured)
{
    EXPECT_EQ(search(), DIRECTORY_NOT_CONFIGURED);
    administratorWrites(configuration());
    EXPECT_EQ(search(), DIRECTORY_SUCCESS);
    administratorWrites(configuration() + "ldap-filter = \"(sn=Baker)\"\n");
    EXPECT_EQ(search(), DIRECTORY_NO_MATCHES);
    administratorWrites("");
    EXPECT_EQ(search(), DIRECTORY_NOT_CONFIGURED);
}

TEST_F(PhoneInACompany, UsesNicknamesAsSoonAsItIsTold)
{
    auto& directory = phone->services().directory();
    administratorWrites(configuration());
    EXPECT_FALSE(directory.isNicknameAttributeActive());
    administratorWrites(configuration() + "ldap-nickname = true\n");
    EXPECT_TRUE(directory.isNicknameAttributeActive());
}

TEST_F(PhoneInACompany, KnowsItsCountryWhereNumbersAreLookedFor)
{
    const AttributeList number{{Utils::OFFICE, "+43 30 1234567"}};
    administratorWrites(configuration());
    EXPECT_EQ(search(number), DIRECTORY_NO_MATCHES);
    administratorWrites(configuration() + "country-code = \"43\"\n");
    EXPECT_EQ(search(number), DIRECTORY_SUCCESS);
}

TEST_F(PhoneInACompany, AsksNobodyAnyMoreOnceItIsSwitchedOff)
{
    administratorWrites(configuration());
    EXPECT_EQ(search(), DIRECTORY_SUCCESS);
    phone->stop();
    EXPECT_EQ(search(), DIRECTORY_CONNECTION_FAILURE);
}
