#include "app/Profile.h"

#include <cstdlib>

namespace fs = std::filesystem;

namespace {

fs::path home()
{
    const char* set = std::getenv("HOME");
    return set && *set ? fs::path(set) : fs::path("/");
}

// Relative paths in these variables are to be ignored.
fs::path folderOf(const char* variable, const char* otherwise)
{
    const char* set = std::getenv(variable);
    if (set && fs::path(set).is_absolute())
        return set;
    return home() / otherwise;
}

bool isReadOnly(const std::error_code& error)
{
    return error == std::errc::read_only_file_system || error == std::errc::permission_denied;
}

} // namespace

Profile Profile::in(const fs::path& folder)
{
    return {folder, folder, folder};
}

Profile Profile::ofUser()
{
    return {folderOf("XDG_CONFIG_HOME", ".config") / "deskbook",
            folderOf("XDG_DATA_HOME", ".local/share") / "deskbook",
            folderOf("XDG_STATE_HOME", ".local/state") / "deskbook"};
}

Profile Profile::demo()
{
    return in(folderOf("XDG_DATA_HOME", ".local/share") / "deskbook-demo");
}

Result<void> Profile::create() const
{
    // Contacts that can only be read need no folder for pictures to come.
    for (const auto& folder : {config, data, log, pictures()}) {
        std::error_code error;
        if (fs::create_directories(folder, error))
            fs::permissions(folder, fs::perms::owner_all, error);
        if (error && !(folder == pictures() && isReadOnly(error)))
            return Error{ErrorCode::Denied,
                         "The folder " + folder.string() + " cannot be used: " + error.message() + "."};
    }
    return {};
}

Result<void> seedDemo(const Profile& profile, const fs::path& demo,
                      const std::function<bool(const fs::path& contacts)>& import)
{
    if (fs::exists(profile.configFile()))
        return {};
    if (!fs::is_directory(demo))
        return Error{ErrorCode::NotFound,
                     "The demo's files are missing: there is no folder " + demo.string() + "."};
    std::error_code error;
    const auto overwrite = fs::copy_options::recursive | fs::copy_options::overwrite_existing;
    if (fs::is_directory(demo / "pictures"))
        fs::copy(demo / "pictures", profile.pictures(), overwrite, error);
    if (!error && !import(demo / "contacts.vcf"))
        return Error{ErrorCode::Failed,
                     "The demo's contacts cannot be imported into " + profile.data.string() + "."};
    // Last: while it is missing, the next start begins anew.
    if (!error)
        fs::copy_file(demo / "config.toml", profile.configFile(), error);
    if (error)
        return Error{ErrorCode::Failed,
                     "The demo cannot be set up in " + profile.data.string() + ": " + error.message() + "."};
    return {};
}
