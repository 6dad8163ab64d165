#include <sstream>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <testing/LogCapture.h>

#include "TemporaryFolder.h"
#include "app/Commands.h"
#include "directory/ldap/LdapPassword.h"
#include "directory/ldap/LdapPasswordCommand.h"

namespace {

using Hosts = std::vector<std::string>;

class Password : public testing::Test {
protected:
    std::string read(const Hosts& hosts)
    {
        const auto kept = password.read(hosts);
        return kept ? kept.value() : "refused: " + kept.error().sentence;
    }
    bool isKept() const { return std::filesystem::exists(password.file()); }
    mode_t mode() const
    {
        struct stat status {};
        ::stat(password.file().c_str(), &status);
        return status.st_mode & 07777;
    }
    void chmod(mode_t mode) { ASSERT_EQ(::chmod(password.file().c_str(), mode), 0); }

    TemporaryFolder folder;
    const LdapPassword password{folder.path()};
    LogCapture log;
};

class PasswordCommand : public Password {
protected:
    int keep(const std::string& typed)
    {
        std::istringstream in(typed);
        return keepLdapPassword(Profile::in(folder.path()), in, out, error);
    }

    std::ostringstream out;
    std::ostringstream error;
};

} // namespace

TEST_F(Password, IsGivenToTheServersItIsFor)
{
    ASSERT_TRUE(password.write(" se cret\xc3\xbc ", {"Ldap.example.com", "other"}));
    EXPECT_EQ(read({"ldap.example.com", "OTHER"}), " se cret\xc3\xbc ");
    EXPECT_EQ(read({"other"}), " se cret\xc3\xbc ");
    EXPECT_EQ(read({"other", "evil"}), "refused: The password was given for another server than "
                                       "\"ldap-servers\" names. Run \"deskphone ldap-password\".");
}

TEST_F(Password, IsItsOwnersAlone)
{
    umask(0);
    ASSERT_TRUE(password.write("secret", {"a"}));
    EXPECT_EQ(mode(), 0600u);
    ASSERT_TRUE(password.write("other", {"a"}));
    EXPECT_EQ(mode(), 0600u);
    EXPECT_EQ(read({"a"}), "other");
    umask(022);
}

TEST_F(Password, IsNotTakenFromAFileThatOthersMayUse)
{
    ASSERT_TRUE(password.write("secret", {"a"}));
    for (const mode_t mode : {0640, 0604, 0644, 0660, 0700, 0400}) {
        chmod(mode);
        EXPECT_EQ(read({"a"}), "refused: \"" + password.file().string() +
                                   "\" must belong to you, and nobody else may read it: \"chmod 600\" it, or "
                                   "remove it. Run \"deskphone ldap-password\".")
            << std::oct << mode;
    }
    chmod(0600);
    EXPECT_EQ(read({"a"}), "secret");
}

TEST_F(Password, IsNotTakenFromALinkAFolderOrAPipe)
{
    ASSERT_TRUE(LdapPassword(folder.path()).write("secret", {"a"}));
    std::filesystem::rename(password.file(), folder / "elsewhere");
    std::filesystem::create_symlink(folder / "elsewhere", password.file());
    EXPECT_NE(read({"a"}).find("is no file that can be read"), std::string::npos);
    std::filesystem::remove(password.file());
    std::filesystem::create_directory(password.file());
    EXPECT_NE(read({"a"}).find("is no file that can be read"), std::string::npos);
    std::filesystem::remove(password.file());
    ASSERT_EQ(::mkfifo(password.file().c_str(), 0600), 0);
    EXPECT_NE(read({"a"}).find("is no file that can be read"), std::string::npos);
}

TEST_F(Password, IsMissingAtFirst)
{
    EXPECT_EQ(read({"a"}),
              "refused: There is no password for the directory. Run \"deskphone ldap-password\".");
}

TEST_F(Password, IsRefusedWhereItCannotBeOne)
{
    EXPECT_FALSE(password.write("", {"a"}));
    EXPECT_FALSE(password.write("two\nlines", {"a"}));
    EXPECT_FALSE(password.write(std::string("nul\0l", 5), {"a"}));
    EXPECT_FALSE(password.write(std::string(257, 'x'), {"a"}));
    EXPECT_FALSE(isKept());
    EXPECT_TRUE(password.write(std::string(256, 'x'), {"a"}));
}

TEST_F(Password, IsForgottenWhenAServerGetsAnotherName)
{
    ASSERT_TRUE(password.write("secret", {"a", "b"}));
    password.forgetUnlessFor({"b"});
    EXPECT_TRUE(isKept());
    password.forgetUnlessFor({"b", "c"});
    EXPECT_FALSE(isKept());
    EXPECT_TRUE(log.has("\"ldap-servers\" names another server: the password for the directory is "
                        "forgotten. Run \"deskphone ldap-password\"."));
    for (const auto& line : log.lines())
        EXPECT_EQ(line.text.find("secret"), std::string::npos);
}

TEST_F(Password, IsForgottenFromAFileThatOthersMayUseToo)
{
    ASSERT_TRUE(password.write("secret", {"a"}));
    chmod(0644);
    password.forgetUnlessFor({"a"});
    EXPECT_TRUE(isKept());
    password.forgetUnlessFor({"b"});
    EXPECT_FALSE(isKept());
}

TEST_F(Password, DamagedIsNoPassword)
{
    for (const auto* text : {"", "a", "a\n", "a\n\n"}) {
        folder.write("ldap-password", text);
        chmod(0600);
        EXPECT_NE(read({"a"}).find("holds no password"), std::string::npos) << text;
    }
}

TEST_F(PasswordCommand, KeepsTheFirstLineForTheServersOfTheConfiguration)
{
    folder.write("config.toml",
                 "ldap-servers = [\"ldaps://one.example.com\", \"ldap://two.example.com:3389\"]\n"
                 "ldap-bind-dn = \"cn=phone\"\n");
    EXPECT_EQ(keep("secret\nsecond line\n"), EXIT_DONE);
    EXPECT_EQ(read({"one.example.com", "two.example.com"}), "secret");
    EXPECT_EQ(out.str(), "The password is kept for one.example.com two.example.com.\n");
    EXPECT_EQ(error.str(), "");
}

TEST_F(PasswordCommand, SaysWhenThePasswordWillNotBeUsed)
{
    folder.write("config.toml", "ldap-servers = [\"one\"]\n");
    EXPECT_EQ(keep("secret"), EXIT_DONE);
    EXPECT_NE(out.str().find("It is not used before \"ldap-bind-dn\" says whose it is."), std::string::npos);
}

TEST_F(PasswordCommand, WantsTheServersFirst)
{
    EXPECT_EQ(keep("secret\n"), EXIT_REFUSED);
    EXPECT_EQ(error.str(), "There is no corporate directory: name its server in \"ldap-servers\".\n");
    EXPECT_FALSE(isKept());
}

TEST_F(PasswordCommand, RefusesAnEmptyPassword)
{
    folder.write("config.toml", "ldap-servers = [\"one\"]\n");
    EXPECT_EQ(keep(""), EXIT_REFUSED);
    EXPECT_EQ(error.str(), "A password is one line of 1 to 256 bytes without control characters.\n");
}

TEST_F(PasswordCommand, SaysThatAnotherSystemsLineEndIsNoPartOfAPassword)
{
    folder.write("config.toml", "ldap-servers = [\"one\"]\n");
    EXPECT_EQ(keep("secret\r\n"), EXIT_REFUSED);
    EXPECT_NE(error.str().find("without control characters"), std::string::npos);
    EXPECT_FALSE(isKept());
}
