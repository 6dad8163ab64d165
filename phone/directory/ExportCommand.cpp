#include "ExportCommand.h"

#include <fstream>
#include <ostream>
#include <sstream>

#include "Cards.h"
#include "DirectoryService.h"
#include "NewFile.h"

namespace {

constexpr int nFAILED = 1;

std::string contentOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream content;
    content << stream.rdbuf();
    return std::move(content).str();
}

Result<std::size_t> writeAll(ContactStore& store, CardWriter& writer, const std::filesystem::path& pictures)
{
    const auto groups = store.groupNames(0);
    if (!groups)
        return groups.error();
    const auto groupName = [&](int slot) {
        const auto index = static_cast<std::size_t>(slot);
        return slot > 0 && index <= groups.value().size() ? groups.value()[index - 1] : "";
    };
    std::size_t count = 0;
    Result<void> written;
    const auto read = store.forEach([&](const Contact& contact, const KeptCard& card) {
        // A picture's name is no path: whatever stands before its last part is not looked at.
        const auto clip = std::filesystem::path(contact.picture).filename();
        const auto photo = clip.empty() ? "" : contentOf(pictures / clip);
        written = writer.write(contact, card, groupName(contact.group), photo);
        count += written ? 1 : 0;
        return written.ok();
    });
    if (!read)
        return read.error();
    if (!written)
        return written.error();
    if (const auto finished = writer.finish(); !finished)
        return finished.error();
    return count;
}

Result<std::size_t> exportTo(const std::filesystem::path& part, const ExportOptions& options)
{
    ContactStore store(DirectoryService::fileIn(options.profile), "");
    if (store.state() == ContactStore::State::Unusable)
        return Error{ErrorCode::Malformed, store.notice()};
    auto writer = CardWriter::open(part, options.version);
    if (!writer)
        return writer.error();
    const auto pictures = options.pictures.empty() ? options.profile / "pictures" : options.pictures;
    return writeAll(store, *writer.value(), pictures);
}

Result<std::size_t> replaceFile(const ExportOptions& options)
{
    const auto target = fileToReplace(options.file);
    if (!target)
        return target.error();
    auto file = NewFile::beside(target.value());
    if (!file)
        return file.error();
    auto count = exportTo(file.value().part(), options);
    if (!count)
        return count;
    if (const auto placed = file.value().putInPlace(); !placed)
        return placed.error();
    return count;
}

} // namespace

int runExport(const ExportOptions& options, std::ostream& out, std::ostream& errors)
{
    const auto count = replaceFile(options);
    if (!count) {
        errors << count.error().sentence << '\n';
        return nFAILED;
    }
    out << "Exported " << count.value() << (count.value() == 1 ? " contact.\n" : " contacts.\n");
    return 0;
}
