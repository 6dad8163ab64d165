#include "NewFile.h"

#include <cerrno>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

fs::path folderOf(const fs::path& file)
{
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
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
    const auto status = fs::status(target, failed);
    if (fs::is_directory(status))
        return cannotBeWritten(file, std::make_error_code(std::errc::is_a_directory));
    if (fs::exists(status) && !fs::is_regular_file(status))
        return Error{ErrorCode::Denied, "\"" + file.string() + "\" is no file: name one to write to."};
    if (::faccessat(AT_FDCWD, folderOf(target).c_str(), W_OK | X_OK, AT_EACCESS) != 0)
        return cannotBeWritten(file, lastError());
    return target;
}

Result<NewFile> NewFile::beside(const fs::path& target)
{
    auto part = target.string() + ".part-XXXXXX";
    const int descriptor = ::mkostemp(part.data(), O_CLOEXEC);
    if (descriptor < 0)
        return cannotBeWritten(target, lastError());
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
