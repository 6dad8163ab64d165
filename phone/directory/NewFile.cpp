#include "NewFile.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <string_view>
#include <tuple>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr std::string_view nPART = ".part-";
constexpr std::string_view nANY = "XXXXXX"; // as mkstemp() wants it
constexpr std::chrono::hours nSURELY_LEFT{1};

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

fs::path folderOf(const fs::path& file)
{
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

// Databases have logs beside them. Of any target if it is "".
bool isNameOfPart(std::string_view name, std::string_view target)
{
    const auto at = name.rfind(nPART);
    if (at == std::string_view::npos || (!target.empty() && name.substr(0, at) != target))
        return false;
    auto rest = name.substr(at + nPART.size());
    for (const std::string_view log : {"-wal", "-shm", "-journal"}) {
        if (rest.ends_with(log))
            rest.remove_suffix(log.size());
    }
    return rest.size() == nANY.size() && std::all_of(rest.begin(), rest.end(), [](unsigned char character) {
               return std::isalnum(character) != 0;
           });
}

// Parts are always for their owner's eyes only, what people call so seldom is.
bool isLeft(const fs::path& file)
{
    struct stat status {};
    if (::lstat(file.c_str(), &status) != 0)
        return false;
    const auto age = std::chrono::seconds(std::time(nullptr) - status.st_mtime);
    return status.st_mode == (S_IFREG | S_IRUSR | S_IWUSR) && age >= nSURELY_LEFT;
}

void giveToOwnerOf(const fs::path& target, int descriptor)
{
    struct stat status {};
    const bool known = ::stat(target.c_str(), &status) == 0 || ::stat(folderOf(target).c_str(), &status) == 0;
    if (::geteuid() == 0 && known)
        std::ignore = ::fchown(descriptor, status.st_uid, status.st_gid);
}

} // namespace

Error cannotBeWritten(const fs::path& file, const std::error_code& reason)
{
    const bool full = reason == std::errc::no_space_on_device;
    return {full ? ErrorCode::Full : ErrorCode::Failed,
            "\"" + file.string() + "\" cannot be written: " + reason.message() + "."};
}

Result<fs::path> fileToReplace(const fs::path& file)
{
    std::error_code failed;
    const auto target = fs::weakly_canonical(file, failed);
    if (failed)
        return cannotBeWritten(file, failed);
    const auto status = fs::status(target, failed);
    if (fs::is_directory(status))
        return cannotBeWritten(file, std::make_error_code(std::errc::is_a_directory));
    if (fs::exists(status) && !fs::is_regular_file(status))
        return Error{ErrorCode::Denied, "\"" + file.string() + "\" is no file: name one to write to."};
    if (::faccessat(AT_FDCWD, folderOf(target).c_str(), W_OK | X_OK, AT_EACCESS) != 0)
        return cannotBeWritten(file, lastError());
    return target;
}

void removeLeftParts(const fs::path& folder, const std::string& target)
{
    std::error_code failed;
    fs::directory_iterator entry(folder, failed);
    for (; !failed && entry != fs::directory_iterator(); entry.increment(failed)) {
        std::error_code ignored;
        if (isNameOfPart(entry->path().filename().string(), target) && isLeft(entry->path()))
            fs::remove(entry->path(), ignored);
    }
}

Result<NewFile> NewFile::beside(const fs::path& target)
{
    auto part = target.string().append(nPART).append(nANY);
    const int descriptor = ::mkostemp(part.data(), O_CLOEXEC);
    if (descriptor < 0)
        return cannotBeWritten(target, lastError());
    giveToOwnerOf(target, descriptor);
    ::close(descriptor);
    return NewFile(target, part);
}

NewFile::~NewFile()
{
    std::error_code ignored;
    if (!m_part.empty())
        fs::remove(m_part, ignored);
}

Result<void> NewFile::putInPlace()
{
    auto failed = syncToDisk(m_part);
    if (!failed)
        fs::rename(m_part, m_target, failed);
    if (failed)
        return cannotBeWritten(m_target, failed);
    m_part.clear();
    if (const auto lost = syncToDisk(folderOf(m_target)))
        return cannotBeWritten(m_target, lost);
    return {};
}

std::error_code syncToDisk(const fs::path& file)
{
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return lastError();
    // Some file systems know no such thing for folders.
    const auto failed = ::fsync(descriptor) != 0 && errno != EINVAL ? lastError() : std::error_code();
    ::close(descriptor);
    return failed;
}
