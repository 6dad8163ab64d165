#include "ExportCommand.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <ostream>
#include <utility>

#include "Cards.h"
#include "ContactStore.h"
#include "NewFile.h"
#include "OutputFile.h"
#include "pictures/PictureFile.h"

namespace {

constexpr int nFAILED = 1;

bool isCardFile(const std::filesystem::path& file)
{
    std::string begin(64, '\0');
    std::ifstream(file, std::ios::binary).read(begin.data(), static_cast<std::streamsize>(begin.size()));
    std::transform(begin.begin(), begin.end(), begin.begin(),
                   [](unsigned char character) { return static_cast<char>(std::toupper(character)); });
    return begin.find("BEGIN:VCARD") != std::string::npos;
}

// "" for what is no picture that the telephone would show.
std::string pictureIn(const std::filesystem::path& file)
{
    const auto opened = PictureFile::open(file);
    auto content = opened ? opened.value().content() : opened.error();
    return content ? std::move(content).value() : "";
}

Result<std::size_t> writeAll(ContactStore& store, CardWriter& writer, const std::filesystem::path& pictures,
                             const OwnGroup& ownGroup)
{
    const auto groups = store.groupNames(0);
    if (!groups)
        return groups.error();
    const auto groupName = [&](int slot) {
        const auto index = static_cast<std::size_t>(slot);
        return slot > 0 && index <= groups.value().size() ? ownGroup.shown(groups.value()[index - 1]) : "";
    };
    std::size_t count = 0;
    Result<void> written;
    const auto read = store.forEach([&](const Contact& contact, const KeptCard& card) {
        // A picture's name is no path: whatever stands before its last part is not looked at.
        const auto clip = std::filesystem::path(contact.picture).filename();
        const auto photo = clip.empty() ? "" : pictureIn(pictures / clip);
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

Result<std::size_t> exportBook(const std::filesystem::path& book, const std::filesystem::path& pictures,
                               const std::filesystem::path& part, const ExportOptions& options)
{
    ContactStore store(book, "");
    if (store.state() == ContactStore::State::Unusable)
        return Error{ErrorCode::Malformed, store.notice()};
    auto writer = CardWriter::open(part, options.version);
    if (!writer)
        return writer.error();
    return writeAll(store, *writer.value(), pictures, options.ownGroup);
}

Result<std::size_t> replaceFile(const ExportOptions& options)
{
    const auto book = phonebookIn(options.profile);
    if (!book)
        return book.error();
    const auto pictures = options.pictures.empty() ? options.profile / "pictures" : options.pictures;
    const auto target =
        whereToWrite({options.file, options.profile, pictures, "vCard file", ".vcf", isCardFile});
    if (!target)
        return target.error();
    auto file = NewFile::beside(target.value());
    if (!file)
        return file.error();
    auto count = exportBook(book.value(), pictures, file.value().part(), options);
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
