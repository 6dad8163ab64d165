#include "system/PasswordFile.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <sstream>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "app/PhoneLog.h"
#include "directory/NewFile.h"

namespace {

constexpr char nSOURCE[] = "./phone/system/PasswordFile";
constexpr std::size_t nLONGEST_PASSWORD = 256;
constexpr std::size_t nLARGEST_FILE = 64 * 1024;

// The first line names the hosts, the second is the password.
struct Kept {
    std::vector<std::string> hosts;
    std::string password;
    bool ownersAlone = false;
};

std::string lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

Result<std::string> contentOf(int descriptor)
{
    std::string text(nLARGEST_FILE, '\0');
    const auto length = ::read(descriptor, text.data(), text.size());
    if (length < 0)
        return Error{ErrorCode::Denied, ""};
    text.resize(static_cast<std::size_t>(length));
    return text;
}

// An error without what to do about it.
Result<Kept> keptIn(const std::filesystem::path& file)
{
    const auto name = "\"" + file.string() + "\"";
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (descriptor < 0 && errno == ENOENT)
        return Error{ErrorCode::NotFound, ""};
    struct stat status {};
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        if (descriptor >= 0)
            ::close(descriptor);
        return Error{ErrorCode::Denied, name + " is no file that can be read: remove it."};
    }
    const auto text = contentOf(descriptor);
    ::close(descriptor);
    Kept kept;
    kept.ownersAlone =
        (status.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO)) == (S_IRUSR | S_IWUSR) && status.st_uid == geteuid();
    std::istringstream lines(text ? text.value() : "");
    std::string hosts;
    if (!std::getline(lines, hosts) || !std::getline(lines, kept.password) || kept.password.empty())
        return Error{ErrorCode::Malformed, name + " holds no password."};
    std::istringstream words(hosts);
    for (std::string host; words >> host;)
        kept.hosts.push_back(host);
    return kept;
}

bool isFor(const Kept& kept, const std::vector<std::string>& hosts)
{
    return std::all_of(hosts.begin(), hosts.end(), [&kept](const auto& host) {
        return std::find(kept.hosts.begin(), kept.hosts.end(), lowered(host)) != kept.hosts.end();
    });
}

} // namespace

PasswordFile::PasswordFile(const std::filesystem::path& profile, Words words)
    : m_file(profile / words.command)
    , m_words(std::move(words))
{
}

Result<std::string> PasswordFile::read(const std::vector<std::string>& hosts) const
{
    auto kept = keptIn(m_file);
    if (!kept && kept.error().code == ErrorCode::NotFound)
        return Error{ErrorCode::NotFound, "There is no password for " + m_words.purpose + "." + how()};
    if (!kept)
        return Error{kept.error().code, kept.error().sentence + how()};
    if (!kept.value().ownersAlone)
        return Error{ErrorCode::Denied,
                     "\"" + m_file.string() +
                         "\" must belong to you, and nobody else may read it: \"chmod 600\" "
                         "it, or remove it." +
                         how()};
    if (!isFor(kept.value(), hosts))
        return Error{ErrorCode::NotFound, "The password was given for another server than \"" + m_words.item +
                                              "\" names." + how()};
    return std::move(kept).value().password;
}

Result<void> PasswordFile::write(const std::string& password, const std::vector<std::string>& hosts) const
{
    const bool oneLine =
        std::none_of(password.begin(), password.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; });
    if (password.empty() || password.size() > nLONGEST_PASSWORD || !oneLine)
        return Error{ErrorCode::Malformed, "A password is one line of 1 to " +
                                               std::to_string(nLONGEST_PASSWORD) +
                                               " bytes without control characters."};
    auto file = NewFile::beside(m_file);
    if (!file)
        return file.error();
    std::ofstream out(file.value().part(), std::ios::binary);
    for (const auto& host : hosts)
        out << lowered(host) << ' ';
    out << '\n' << password << '\n';
    out.close();
    if (!out)
        return cannotBeWritten(m_file, std::make_error_code(std::errc::no_space_on_device));
    return file.value().putInPlace();
}

void PasswordFile::forgetUnlessFor(const std::vector<std::string>& hosts) const
{
    const auto kept = keptIn(m_file);
    if (!kept || isFor(kept.value(), hosts))
        return;
    std::error_code failed;
    std::filesystem::remove(m_file, failed);
    if (failed)
        PHONE_ERROR("the password for %s, which was for another server, cannot be deleted: %s",
                    m_words.purpose.c_str(), failed.message().c_str());
    else
        PHONE_USER("\"%s\" names another server: the password for %s is forgotten.%s", m_words.item.c_str(),
                   m_words.purpose.c_str(), how().c_str());
}
