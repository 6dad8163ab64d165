// What a phonebook of 100,000 contacts costs, beside SQLite and ICU alone doing the same work in the
// same run. `ratio` is our time over theirs.

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <unicode/coll.h>

#include <framework/display/PhonebookItem.h>
#include <framework/display/SearchList.h>
#include <framework/util/Utf8Utils.h>

#include "PhonebookList.h"
#include "app/EventPoster.h"
#include "directory/ContactStore.h"
#include "directory/DirectoryService.h"
#include "directory/Sqlite.h"

namespace {

constexpr char nLANGUAGE[] = "de";
constexpr int nCONTACTS = 100000;
constexpr std::size_t nSEARCHES = 1024;

class NoEvents final : public EventPoster {
public:
    void post(std::string, std::function<void()>) override {}
};

std::string madeUpName(std::mt19937& random, int syllables)
{
    static const char* const nSYLLABLES[] = {"ber", "mül", "ler", "ann", "schmi", "dt",  "ka",
                                             "ro",  "li",  "na",  "hof", "stein", "wei", "ßen",
                                             "gö",  "tz",  "ar",  "tho", "ma",    "ski"};
    std::string name;
    for (int i = 0; i < syllables; ++i)
        name += nSYLLABLES[random() % std::size(nSYLLABLES)];
    if (name[0] >= 'a')
        name[0] = static_cast<char>(name[0] - 'a' + 'A');
    return name;
}

std::vector<Contact> madeUpContacts()
{
    std::mt19937 random(1);
    std::vector<Contact> contacts(nCONTACTS);
    for (auto& contact : contacts) {
        contact.id = ContactStore::newId();
        contact.surname = madeUpName(random, 2 + static_cast<int>(random() % 3));
        contact.firstname = madeUpName(random, 1 + static_cast<int>(random() % 3));
        contact.defaultNumber = DefaultNumber::Office;
    }
    return contacts;
}

// The same contacts in the telephone's store and in a plain table.
class Book {
public:
    Book()
    {
        Utf8Utils::create(nLANGUAGE);
        char folder[] = "/tmp/bench-list-XXXXXX";
        if (!mkdtemp(folder))
            throw std::runtime_error("no folder for the contacts");
        m_folder = folder;
        auto contacts = madeUpContacts();
        fillStore(contacts);
        fillTable(contacts);
        auto service = DirectoryService::open(
            m_folder,
            {.language = nLANGUAGE, .groupSlots = 20, .watchInterval = std::chrono::milliseconds(0)},
            m_events);
        if (!service)
            throw std::runtime_error("the contacts cannot be opened");
        m_pService = std::move(service.value());
    }
    ~Book()
    {
        m_pService.reset();
        m_pTable.reset();
        std::filesystem::remove_all(m_folder);
    }

    Book(const Book&) = delete;
    Book& operator=(const Book&) = delete;

    DirectoryService& service() { return *m_pService; }
    Database& table() { return *m_pTable; }

private:
    void fillStore(const std::vector<Contact>& contacts)
    {
        ContactStore store(DirectoryService::fileIn(m_folder), nLANGUAGE);
        const auto stored = store.inTransaction([&] {
            for (const auto& contact : contacts)
                store.put(contact);
            return true;
        });
        if (!stored)
            throw std::runtime_error("the contacts cannot be stored");
    }
    void fillTable(const std::vector<Contact>& contacts)
    {
        m_pTable = std::make_unique<Database>(m_folder / "plain.db", Database::Mode::ReadWrite);
        m_pTable->execute("CREATE TABLE plain(id TEXT, surname TEXT, firstname TEXT, code INTEGER)");
        Transaction transaction(*m_pTable);
        Statement insert(m_pTable->handle(), "INSERT INTO plain VALUES(?1, ?2, ?3, ?4)");
        for (const auto& contact : contacts) {
            insert.bind(1, contact.id).bind(2, contact.surname).bind(3, contact.firstname);
            insert.bind(4, static_cast<std::int64_t>(contact.defaultNumber)).run();
        }
        transaction.commit();
    }

    std::filesystem::path m_folder;
    NoEvents m_events;
    std::unique_ptr<Database> m_pTable;
    std::unique_ptr<DirectoryService> m_pService;
};

Book& book()
{
    static Book theBook;
    return theBook;
}

struct PlainRow {
    std::string id;
    std::string surname;
    std::string firstname;
    std::int64_t code;
};

std::vector<PlainRow> plainRead(Database& table)
{
    std::vector<PlainRow> rows;
    Statement row(table.handle(), "SELECT id, surname, firstname, code FROM plain");
    while (row.step())
        rows.push_back(
            {std::string(row.text(0)), std::string(row.text(1)), std::string(row.text(2)), row.number(3)});
    return rows;
}

void plainSort(std::vector<std::string>& names)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Collator> collator(
        icu::Collator::createInstance(icu::Locale(nLANGUAGE), status));
    std::sort(names.begin(), names.end(), [&](const std::string& left, const std::string& right) {
        return collator->compareUTF8(left, right, status) == UCOL_LESS;
    });
}

std::vector<std::string> shownNames(PhonebookList& list, displayMode mode)
{
    std::vector<std::string> names;
    for (unsigned int row = 0; row < list.size(); ++row)
        names.push_back(list.elementAt(row).getDisplayName(mode, displayQualifier::None));
    return names;
}

template <typename Work> double secondsFor(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Both do their work in every iteration, one after the other.
template <typename Ours, typename Theirs> void compare(benchmark::State& state, Ours ours, Theirs theirs)
{
    double ourSeconds = 0;
    double theirSeconds = 0;
    for (auto _ : state) {
        theirSeconds += theirs();
        const double seconds = ours();
        ourSeconds += seconds;
        state.SetIterationTime(seconds);
    }
    state.counters["theirs_ms"] = theirSeconds * 1000 / static_cast<double>(state.iterations());
    state.counters["ratio"] = ourSeconds / theirSeconds;
}

void populateAndSort(benchmark::State& state)
{
    Book& contacts = book();
    PhonebookList list(&contacts.service());
    list.setDisplayMode(displayMode::SurnameFirstname);
    compare(
        state, [&] { return secondsFor([&] { list.populate(-1); }); },
        [&] {
            return secondsFor([&] {
                std::vector<std::string> names;
                for (const auto& row : plainRead(contacts.table()))
                    names.push_back(row.surname + ", " + row.firstname);
                plainSort(names);
            });
        });
    if (list.size() != nCONTACTS)
        state.SkipWithError("contacts are missing");
}

void sortAgain(benchmark::State& state)
{
    PhonebookList list(&book().service());
    list.setDisplayMode(displayMode::FirstnameSurname);
    list.populate(-1);
    compare(
        state, [&] { return secondsFor([&] { list.setDisplayMode(displayMode::FirstnameSurname); }); },
        [&] {
            list.setDisplayMode(displayMode::SurnameFirstname);
            auto names = shownNames(list, displayMode::FirstnameSurname);
            return secondsFor([&] { plainSort(names); });
        });
}

// One contact of 100,000 changes its name; the disk is waited for on both sides.
void saveContact(benchmark::State& state)
{
    Database& table = book().table();
    PhonebookList list(&book().service());
    list.setDisplayMode(displayMode::SurnameFirstname);
    list.populate(-1);
    std::vector<std::string> names = shownNames(list, displayMode::SurnameFirstname);
    std::mt19937 random(3);
    compare(
        state,
        [&] {
            const auto row = random() % nCONTACTS;
            PhonebookFullEntry entry;
            if (!list.getFullEntry(static_cast<unsigned int>(row), entry))
                state.SkipWithError("a contact is missing");
            entry.setSurname(madeUpName(random, 3));
            int newIndex = -1;
            return secondsFor([&] { list.updateEntry(&entry, newIndex, static_cast<int>(row)); });
        },
        [&] {
            const auto surname = madeUpName(random, 3);
            names[random() % nCONTACTS] = surname + ", " + madeUpName(random, 2);
            return secondsFor([&] {
                Transaction transaction(table);
                Statement update(table.handle(), "UPDATE plain SET surname = ?1 WHERE rowid = ?2");
                update.bind(1, surname).bind(2, static_cast<std::int64_t>(random() % nCONTACTS + 1)).run();
                transaction.commit();
                plainSort(names);
            });
        });
}

// Another name format, until every row of the screen's list has its new label.
void switchNameFormat(benchmark::State& state)
{
    PhonebookList list(&book().service());
    list.setDisplayMode(displayMode::FirstnameSurname);
    list.populate(-1);
    DisplayAPI::SearchList widget;
    for (const auto& name : shownNames(list, list.getDisplayMode()))
        widget.append(new DisplayAPI::PhonebookItem(3, 0, name, 1));
    compare(
        state,
        [&] {
            return secondsFor([&] {
                list.setDisplayMode(displayMode::FirstnameSurname);
                for (int row = 0; row < widget.size(); ++row) {
                    const auto entry = list.elementAt(static_cast<unsigned int>(row));
                    widget.set(row, 3, 0,
                               entry.getDisplayName(list.getDisplayMode(), list.getDisplayQualifier()), 1);
                }
            });
        },
        [&] {
            list.setDisplayMode(displayMode::SurnameFirstname);
            auto names = shownNames(list, displayMode::FirstnameSurname);
            return secondsFor([&] { plainSort(names); });
        });
}

void quickSearch(benchmark::State& state)
{
    PhonebookList list(&book().service());
    list.setDisplayMode(displayMode::SurnameFirstname);
    list.populate(-1);
    std::mt19937 random(2);
    std::vector<std::string> typed;
    for (std::size_t i = 0; i < nSEARCHES; ++i)
        typed.push_back(madeUpName(random, 1 + static_cast<int>(random() % 3)));
    std::size_t next = 0;
    for (auto _ : state) {
        int index = 0;
        benchmark::DoNotOptimize(list.getIndex(typed[next++ % nSEARCHES], index));
    }
}

std::size_t bytesInUse()
{
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// The rows of the list and of the widget that shows them, less the bytes of their texts.
void bytesARow(benchmark::State& state)
{
    DirectoryService& service = book().service();
    for (auto _ : state) {
        const std::size_t before = bytesInUse();
        PhonebookList list(&service);
        list.populate(-1);
        const std::size_t withList = bytesInUse();
        DisplayAPI::SearchList widget;
        std::size_t listTexts = 0;
        std::size_t widgetTexts = 0;
        for (const auto& name : shownNames(list, list.getDisplayMode())) {
            widget.append(new DisplayAPI::PhonebookItem(3, 0, name, 1));
            widgetTexts += name.size();
        }
        const std::size_t withWidget = bytesInUse();
        for (unsigned int row = 0; row < list.size(); ++row) {
            const auto entry = list.elementAt(row);
            listTexts += entry.getUniqueId().size() + entry.getSurname().size() +
                         entry.getFirstname().size() + entry.getDefaultNumber().size();
        }
        const double rows = list.size();
        state.counters["list"] = static_cast<double>(withList - before - listTexts) / rows;
        state.counters["widget"] = static_cast<double>(withWidget - withList - widgetTexts) / rows;
    }
}

BENCHMARK(populateAndSort)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(sortAgain)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(saveContact)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(switchNameFormat)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(quickSearch)->Unit(benchmark::kMicrosecond);
BENCHMARK(bytesARow)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
