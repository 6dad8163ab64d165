// Whatever a database file holds as names, the list text stays lines of four fields that the
// phonebook can take apart, in valid UTF-8.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "PhonebookListEntry.h"
#include "directory/ContactStore.h"
#include "directory/ContactText.h"

namespace {

std::filesystem::path memoryFile()
{
    return std::filesystem::path("/dev/shm") / ("deskbook-fuzz-" + ContactStore::newId());
}

// One store for all inputs: opening costs more than everything else.
struct Book {
    Book()
        : folder(memoryFile())
        , store(folder / "contacts.db", "de")
    {
    }
    ~Book() { std::filesystem::remove_all(folder); }
    std::filesystem::path folder;
    ContactStore store;
};

void expectRow(const std::string& line)
{
    if (std::count(line.begin(), line.end(), '\t') != 3)
        std::abort();
    if (PhonebookListEntry(line).getUniqueId() != "row")
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Book book;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto half = size / 2;

    // Past the store's own cleaning, as a damaged file would have it.
    Contact contact;
    contact.id = "row";
    contact.surname = bytes.substr(0, half);
    contact.firstname = bytes.substr(half);
    const auto stored = book.store.inTransaction([&] {
        book.store.put(contact);
        return true;
    });
    if (!stored)
        std::abort();

    const auto list = book.store.listText(std::nullopt).value();
    if (list.find('\n') != std::string::npos)
        std::abort();
    expectRow(list);
    PhonebookListEntry row(list);
    if (!isCleanText(row.getSurname()) || !isCleanText(row.getFirstname()))
        std::abort();

    // The text itself, as the phonebook splits it.
    PhonebookListEntry{std::string(bytes)};
    return 0;
}
