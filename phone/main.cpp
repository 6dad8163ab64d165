// deskphone: the telephone, and what is done to its profile from outside.

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <optional>

#include <spawn.h>
#include <sys/wait.h>

#include <CLI/CLI.hpp>

#include "app/Commands.h"
#include "app/DemoDirectory.h"
#include "app/DemoLine.h"
#include "app/DemoPbx.h"
#include "app/Phone.h"
#include "app/ProfileLock.h"
#include "app/Resources.h"
#include "app/StopSignals.h"
#include "app/TextMode.h"
#include "calls/sip/SipPasswordCommand.h"
#include "directory/BackupCommand.h"
#include "directory/ExportCommand.h"
#include "directory/ImportCommand.h"
#include "directory/NewFile.h"
#include "directory/ldap/LdapCheckCommand.h"
#include "directory/ldap/LdapPasswordCommand.h"
#include "pictures/AddPictureCommand.h"
#include "system/Log.h"
#include "system/Translator.h"
#include "web/PageFace.h"
#include "web/Token.h"
#include "web/WebServer.h"

namespace {

struct Arguments {
    std::string profile;
    bool demo = false;
    bool text = false;
    bool log = false;
    bool open = true;
    std::uint16_t port = 0;
};

// A script's variable that is not set must not mean the user's own profile.
std::string isNamed(const std::string& folder)
{
    return folder.empty() ? "a folder's name is missing" : "";
}

int refuse(const Error& error)
{
    std::fprintf(stderr, "%s\n", error.sentence.c_str());
    return EXIT_REFUSED;
}

Profile profileOf(const Arguments& arguments)
{
    if (arguments.demo)
        return Profile::demo();
    return arguments.profile.empty() ? Profile::ofUser()
                                     : Profile::in(std::filesystem::absolute(arguments.profile));
}

OwnGroup ownGroupOf(const Configuration& configuration)
{
    const Translator translator(Resources::ofProgram().catalogues, configuration.text("language"));
    return OwnGroup(translator.translate(OwnGroup::nKEY));
}

int importContacts(const Profile& profile, const std::filesystem::path& file, bool dryRun)
{
    if (const auto made = profile.create(); !made)
        return refuse(made.error());
    const Configuration configuration(profile.configFile());
    return runImport({file, profile.data, profile.pictures(), configuration.number("group-slots"), dryRun,
                      ownGroupOf(configuration)},
                     std::cout, std::cerr);
}

int exportContacts(const Profile& profile, const std::filesystem::path& file, const std::string& version)
{
    const Configuration configuration(profile.configFile());
    return runExport({file, profile.data, profile.pictures(), version, ownGroupOf(configuration)}, std::cout,
                     std::cerr);
}

int restoreContacts(const Profile& profile, const std::filesystem::path& file)
{
    if (const auto made = profile.create(); !made)
        return refuse(made.error());
    return runRestore({file, profile.data, profile.pictures()}, std::cout, std::cerr);
}

int copyPictures(const Profile& profile, const std::vector<std::filesystem::path>& files)
{
    if (const auto made = profile.create(); !made)
        return refuse(made.error());
    return addPictures(files, profile.pictures(), std::cout, std::cerr);
}

Result<void> prepare(const Profile& profile, const Arguments& arguments, const Resources& resources)
{
    if (auto made = profile.create(); !made)
        return made.error();
    if (!arguments.demo)
        return {};
    return seedDemo(profile, resources.demo, [&profile](const std::filesystem::path& contacts) {
        return importContacts(profile, contacts, false) == EXIT_DONE;
    });
}

// Null when it could not be started: the rest of the demo does not need it.
std::unique_ptr<ChildProgram> ifStarted(Result<std::unique_ptr<ChildProgram>> server, const char* otherwise)
{
    if (server)
        return std::move(server).value();
    std::fprintf(stderr, "%s %s\n", otherwise, server.error().sentence.c_str());
    return nullptr;
}

// The servers of the demo, for as long as it lives.
struct DemoServers {
    DemoServers(const Profile& profile, const std::filesystem::path& demo)
        : directory(ifStarted(startDemoDirectory(profile, demo), "The demo has no corporate directory."))
        , pbx(ifStarted(startDemoPbx(profile, demo), "The demo has no PBX."))
        , line(ifStarted(startDemoLine(profile, demo),
                         "The demo has no line with sound; its PBX has calls without."))
    {
    }

    std::unique_ptr<ChildProgram> directory;
    std::unique_ptr<ChildProgram> pbx;
    std::unique_ptr<ChildProgram> line;
};

// Shows the address on the desktop, if there is one; whether that worked is of no consequence.
void openOnDesktop(const std::string& address)
{
    if (!std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY"))
        return;
    std::string program = "xdg-open";
    std::string argument = address;
    char* const words[] = {program.data(), argument.data(), nullptr};
    pid_t child = 0;
    posix_spawnp(&child, program.c_str(), nullptr, nullptr, words, environ);
}

int showPage(Phone& phone, const Profile& profile, const Arguments& arguments, const StopSignals& signals)
{
    auto access = loadWebAccess(profile.data);
    if (!access)
        return refuse(access.error());
    PageFace face(phone.frames(), phone.keys(), phone.translator(), profile.pictures());
    const auto port = arguments.port != 0 ? arguments.port : access.value().port;
    const auto server = WebServer::start(face, port, access.value().token);
    if (!server)
        return refuse(server.error());
    access.value().port = server.value()->port();
    if (const auto kept = saveWebAccess(profile.data, access.value()); !kept)
        std::fprintf(stderr, "%s\n", kept.error().sentence.c_str());
    std::printf("The telephone is at %s\n", server.value()->address().c_str());
    std::fflush(stdout);
    if (arguments.open)
        openOnDesktop(server.value()->address());
    signals.wait();
    return EXIT_DONE;
}

int runTelephone(const Arguments& arguments)
{
    const StopSignals signals;
    const auto profile = profileOf(arguments);
    const auto resources = Resources::ofProgram();
    if (const auto prepared = prepare(profile, arguments, resources); !prepared)
        return refuse(prepared.error());
    const auto lock = ProfileLock::take(profile);
    if (!lock)
        return refuse(lock.error());
    for (const auto& folder : {profile.data, profile.pictures()})
        removeLeftParts(folder);
    std::optional<DemoServers> servers;
    if (arguments.demo)
        servers.emplace(profile, resources.demo);

    Log log(profile.log / "deskphone.log", arguments.log ? Log::Echo::StandardError : Log::Echo::None);
    PhoneOptions options;
    options.profile = profile;
    options.catalogues = resources.catalogues;
    options.phonelets = {{"phonebook", resources.phonebook}, {"CorvanStimulus", resources.stimulus}};
    options.setLogLevel = [&log](int level) { log.setLevel(level); };
    const auto phone = Phone::create(std::move(options));
    if (!phone)
        return refuse(phone.error());
    phone.value()->start();
    if (!arguments.text)
        return showPage(*phone.value(), profile, arguments, signals);
    TextMode text(phone.value()->events(), phone.value()->frames(), phone.value()->keys(), std::cout);
    text.run(STDIN_FILENO, signals.descriptor());
    return EXIT_DONE;
}

} // namespace

int main(int argc, char** argv)
{
    Arguments arguments;
    std::string item;
    std::string value;
    std::string file;
    std::vector<std::filesystem::path> pictures;
    bool dryRun = false;
    std::string version = "3.0";

    CLI::App app("A desk telephone with its phonebook.", "deskphone");
    app.fallthrough(); // "deskphone config list --profile DIR" too
    auto* demo = app.add_flag("--demo", arguments.demo, "Use a profile of its own with made-up contacts");
    app.add_option("--profile", arguments.profile, "Keep contacts and settings in this folder")
        ->check(isNamed)
        ->excludes(demo);
    app.add_flag("--text", arguments.text, "Show the screen as text and read keys as words");
    app.add_option("--port", arguments.port, "Serve the page on this port");
    app.add_flag("!--no-open", arguments.open, "Do not open the page on the desktop");
    app.add_flag("--log", arguments.log, "Write the log to the standard error output too");

    auto* config = app.add_subcommand("config", "Look at the settings, or change one")->require_subcommand(1);
    auto* list = config->add_subcommand("list", "Print every setting with its unit, value and default");
    auto* set = config->add_subcommand("set", "Change a setting; a running telephone notices");
    set->add_option("ITEM", item)->required();
    set->add_option("VALUE", value)->required();
    auto* import = app.add_subcommand("import", "Take the contacts of a vCard file in");
    import->add_option("FILE", file)->required();
    import->add_flag("--dry-run", dryRun, "Only tell what would happen");
    auto* exported = app.add_subcommand("export", "Write all contacts into a vCard file");
    exported->add_option("FILE", file)->required();
    exported->add_option("--version", version, "Of the cards")->check(CLI::IsMember({"2.1", "3.0", "4.0"}));
    auto* backup = app.add_subcommand("backup", "Write contacts, groups, options and pictures into one file");
    backup->add_option("FILE", file)->required();
    auto* restore = app.add_subcommand("restore", "Put what a backup holds in the place of what there is");
    restore->add_option("FILE", file)->required();
    auto* addPicture = app.add_subcommand("add-picture", "Copy pictures to those that contacts may have");
    addPicture->add_option("FILE", pictures)->required();
    auto* ldapCheck =
        app.add_subcommand("ldap-check", "Tell step by step whether the corporate directory can be asked");
    auto* ldapPassword =
        app.add_subcommand("ldap-password", "Keep the password for the corporate directory; it is asked for");
    auto* sipPassword = app.add_subcommand("sip-password", "Keep the password for the line; it is asked for");
    auto* clearAll =
        app.add_subcommand("clear-calls", "Delete the calls that were dialled; a running telephone "
                                          "forgets its redial number");
    auto* token = app.add_subcommand("new-token", "Lock out pages that know the address");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? EXIT_DONE : EXIT_USAGE;
    }
    const auto profile = profileOf(arguments);
    if (*list)
        return listConfiguration(profile);
    if (*set)
        return setConfiguration(profile, item, value);
    if (*import)
        return importContacts(profile, file, dryRun);
    if (*exported)
        return exportContacts(profile, file, version);
    if (*backup)
        return runBackup({file, profile.data, profile.pictures()}, std::cout, std::cerr);
    if (*restore)
        return restoreContacts(profile, file);
    if (*addPicture)
        return copyPictures(profile, pictures);
    if (*ldapCheck)
        return checkLdap(profile, std::cout);
    if (*ldapPassword)
        return keepLdapPassword(profile, std::cin, std::cout, std::cerr);
    if (*sipPassword)
        return keepSipPassword(profile, std::cin, std::cout, std::cerr);
    if (*clearAll)
        return clearCalls(profile);
    if (*token)
        return replaceToken(profile);
    return runTelephone(arguments);
}
