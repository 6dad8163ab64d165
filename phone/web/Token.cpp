#include "web/Token.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::size_t nTOKEN_BYTES = 16;

std::filesystem::path fileOf(const std::filesystem::path& profile)
{
    return profile / "page-access";
}

Error failure(const std::filesystem::path& file, const char* what)
{
    return {errno == ENOSPC ? ErrorCode::Full : ErrorCode::Denied, "The page's access file " + file.string() +
                                                                       " cannot be " + what + ": " +
                                                                       std::strerror(errno) + "."};
}

bool isToken(const std::string& text)
{
    return text.size() == 2 * nTOKEN_BYTES && text.find_first_not_of("0123456789abcdef") == std::string::npos;
}

// The kept port with another token.
Result<WebAccess> withNewToken(const std::filesystem::path& profile)
{
    WebAccess access;
    std::string before;
    unsigned port = 0;
    if (std::ifstream(fileOf(profile)) >> before >> port && port <= 65535)
        access.port = static_cast<std::uint16_t>(port);

    auto token = newToken();
    if (!token)
        return token.error();
    access.token = token.value();
    return access;
}

} // namespace

Result<std::string> newToken()
{
    std::array<unsigned char, nTOKEN_BYTES> bytes{};
    if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
        return Error{ErrorCode::Failed, "The system gave no random numbers."};
    constexpr char digits[] = "0123456789abcdef";
    std::string token;
    for (const auto byte : bytes) {
        token += digits[byte >> 4];
        token += digits[byte & 0xF];
    }
    return token;
}

Result<WebAccess> loadWebAccess(const std::filesystem::path& profile)
{
    WebAccess access;
    unsigned port = 0;
    std::ifstream file(fileOf(profile));
    if (file >> access.token >> port && isToken(access.token) && port <= 65535) {
        access.port = static_cast<std::uint16_t>(port);
        return access;
    }
    auto renewed = withNewToken(profile);
    if (renewed)
        static_cast<void>(saveWebAccess(profile, renewed.value()));
    return renewed;
}

Result<void> saveWebAccess(const std::filesystem::path& profile, const WebAccess& access)
{
    // Written whole beside the old one and then put in its place: a full disk loses neither.
    const auto file = fileOf(profile);
    const std::string beside = file.string() + ".new";
    const int descriptor = ::open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return failure(file, "written");
    const std::string text = access.token + " " + std::to_string(access.port) + "\n";
    const bool written = ::fchmod(descriptor, 0600) == 0 &&
                         ::write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    if (::close(descriptor) != 0 || !written || ::rename(beside.c_str(), file.c_str()) != 0) {
        const auto error = failure(file, "written");
        ::unlink(beside.c_str());
        return error;
    }
    return {};
}

Result<WebAccess> renewToken(const std::filesystem::path& profile)
{
    auto access = withNewToken(profile);
    if (!access)
        return access;
    if (const auto saved = saveWebAccess(profile, access.value()); !saved)
        return saved.error();
    return access;
}
