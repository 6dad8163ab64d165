#include "NumberSearch.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <set>
#include <utility>

#include "Contact.h"
#include "ContactText.h"
#include "Sqlite.h"

namespace {

constexpr char nOTHER[] = "'?'"; // the end of all numbers that are to be compared anyway

// SQL for what a number is indexed by. The files hold this expression: changed, it needs indexes under
// other names.
std::string endOf(const std::string& number)
{
    std::string digits = number;
    for (const char separator : {' ', '-', '/', '.', '(', ')', '+'})
        digits = "replace(" + digits + ",'" + separator + "','')";
    return "CASE WHEN length(" + digits + ") < 2 OR " + number + " GLOB '*[^-0-9 /.()+]*' THEN " + nOTHER +
           " ELSE substr(" + digits + ",-2) END";
}

std::string indexOf(const std::string& field)
{
    return "contacts_by_" + field + "_end";
}

// The names of the fields are those of their columns.
void addContacts(Database& contacts, const std::string& field, const std::string& number,
                 const Canonical& canonical, std::set<std::int64_t>& found)
{
    Statement alike(contacts.handle(), "SELECT rowid, " + field + " FROM contacts WHERE " + field +
                                           " <> '' AND " + endOf(field) + " IN (" + endOf("?1") + ", " +
                                           nOTHER + ")");
    alike.bind(1, number);
    while (alike.step()) {
        if (canonical(fitText(alike.text(1), contact_limits::nNUMBER)) == number)
            found.insert(alike.number(0));
    }
}

std::string fullName(std::string_view surname, std::string_view firstname)
{
    auto name = fitText(surname, contact_limits::nNAME);
    const auto first = fitText(firstname, contact_limits::nNAME);
    return name + (name.empty() || first.empty() ? "" : ", ") + first;
}

std::vector<std::string> namesIn(Database& contacts, const std::string& number, const Canonical& canonical)
{
    std::set<std::int64_t> found;
    for (const auto& field : nNUMBER_FIELDS)
        addContacts(contacts, field.name, canonical(number), canonical, found);

    std::vector<std::pair<std::string, std::string>> sorted; // by their keys
    Statement read(contacts.handle(), "SELECT name_key, surname, firstname FROM contacts WHERE rowid = ?1");
    for (const auto row : found) {
        read.bind(1, row);
        if (read.step())
            sorted.emplace_back(read.blob(0), fullName(read.text(1), read.text(2)));
        read.reset();
    }
    std::ranges::sort(sorted);
    std::vector<std::string> names;
    for (auto& [key, name] : sorted) {
        if (!name.empty() && std::ranges::find(names, name) == names.end())
            names.push_back(std::move(name));
    }
    return names;
}

} // namespace

void indexNumbers(Database& contacts)
{
    constexpr char COUNT[] = "SELECT count(*) FROM sqlite_schema WHERE type = 'index' AND name LIKE '%_end'";
    if (contacts.queryNumber(COUNT) == std::ssize(nNUMBER_FIELDS))
        return;
    Transaction transaction(contacts);
    for (const auto& field : nNUMBER_FIELDS) {
        const std::string name = field.name;
        contacts.execute("CREATE INDEX IF NOT EXISTS " + indexOf(name) + " ON contacts(" + endOf(name) +
                         ", " + name + ") WHERE " + name + " <> ''");
    }
    transaction.commit();
}

Result<std::vector<std::string>> namesWithNumber(const std::filesystem::path& file, const std::string& number,
                                                 const Canonical& canonical)
{
    const auto read = [&](Database::Mode mode) {
        Database contacts(file, mode);
        return namesIn(contacts, number, canonical);
    };
    try {
        return read(Database::Mode::ReadOnly);
    } catch (const SqliteError&) {
        // Its folder may be one that nothing can be written to, not even the locks of its readers.
    }
    try {
        return read(Database::Mode::Immutable);
    } catch (const SqliteError& error) {
        return error.toError();
    }
}
