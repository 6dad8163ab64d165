// What the store of 100,000 contacts costs, beside SQLite alone doing the same work on the same file
// in the same run. `ratio` is our time over that.

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <stdexcept>

#include <benchmark/benchmark.h>

#include "calls/DialPlan.h"
#include "directory/ContactStore.h"
#include "directory/NumberSearch.h"

namespace {

constexpr int nCONTACTS = 100000;

class Book {
public:
    Book()
    {
        char folder[] = "/tmp/bench-store-XXXXXX";
        if (!mkdtemp(folder))
            throw std::runtime_error("no folder for the contacts");
        m_folder = folder;
        m_pStore = std::make_unique<ContactStore>(m_folder / "contacts.db", "de");
        const auto filled = m_pStore->inTransaction([this] {
            std::mt19937 random(1);
            Contact contact;
            for (int i = 0; i < nCONTACTS; ++i) {
                contact.id = ContactStore::newId();
                contact.surname = "M\u00fcller" + std::to_string(random());
                contact.firstname = "Anna" + std::to_string(random() % 100);
                contact.office = "+49 30 " + std::to_string(i);
                contact.defaultNumber = DefaultNumber::Office;
                m_pStore->put(contact);
            }
            return true;
        });
        if (!filled)
            throw std::runtime_error("the contacts cannot be stored");
    }
    ~Book()
    {
        m_pStore.reset();
        std::filesystem::remove_all(m_folder);
    }
    Book(const Book&) = delete;
    Book& operator=(const Book&) = delete;

    ContactStore& store() { return *m_pStore; }

    // As SQLite gives it, unordered: the least that a list can cost.
    void readBare()
    {
        Statement row(m_pStore->database()->handle(),
                      "SELECT id, surname, firstname, default_number FROM contacts NOT INDEXED");
        while (row.step()) {
            benchmark::DoNotOptimize(row.text(0));
            benchmark::DoNotOptimize(row.text(1));
            benchmark::DoNotOptimize(row.text(2));
            benchmark::DoNotOptimize(row.number(3));
        }
    }

private:
    std::filesystem::path m_folder;
    std::unique_ptr<ContactStore> m_pStore;
};

template <typename F> double seconds(F&& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void listText(benchmark::State& state)
{
    Book book;
    book.readBare();
    double ours = 0;
    double bare = 0;
    for (auto _ : state) {
        bare += seconds([&] { book.readBare(); });
        const double once = seconds([&] { benchmark::DoNotOptimize(book.store().listText(std::nullopt)); });
        ours += once;
        state.SetIterationTime(once);
    }
    state.counters["ratio"] = ours / bare;
}
BENCHMARK(listText)->UseManualTime()->Unit(benchmark::kMillisecond);

// Who calls? One number of 100,000, written in another way; beside it, reading them all to find out.
void nameOfACaller(benchmark::State& state)
{
    Book book;
    DialPlanRules rules;
    rules.countryCode = "49";
    rules.areaCode = "30";
    const DialPlan plan(rules);
    const auto canonical = [&plan](const std::string& number) { return plan.canonical(number); };
    const auto readAll = [&] {
        Statement row(book.store().database()->handle(), "SELECT office FROM contacts NOT INDEXED");
        while (row.step())
            benchmark::DoNotOptimize(canonical(std::string(row.text(0))));
    };
    double ours = 0;
    double bare = 0;
    for (auto _ : state) {
        bare += seconds(readAll);
        const double once = seconds([&] {
            if (namesWithNumber(book.store().file(), "030 67890", canonical).value().size() != 1)
                state.SkipWithError("not found");
        });
        ours += once;
        state.SetIterationTime(once);
    }
    state.counters["ratio"] = ours / bare;
}
BENCHMARK(nameOfACaller)->UseManualTime()->Unit(benchmark::kMillisecond);

void saveOne(benchmark::State& state)
{
    Book book;
    Contact contact;
    contact.surname = "Miller";
    contact.id = book.store().write(contact).value();
    for (auto _ : state) {
        contact.mobile = contact.mobile.empty() ? "0171" : "";
        if (!book.store().write(contact))
            state.SkipWithError("not saved");
    }
}
BENCHMARK(saveOne)->Unit(benchmark::kMillisecond);

// A group of 10,000 members is deleted: they stay, and belong to none.
void reassignGroup(benchmark::State& state)
{
    constexpr char nFILL[] = "UPDATE contacts SET slot = 1 WHERE rowid <= 10000";
    constexpr char nEMPTY[] = "UPDATE contacts SET slot = NULL WHERE slot = 1";
    Book book;
    if (!book.store().writeGroupNames({"Sales"}))
        throw std::runtime_error("the group cannot be stored");
    double ours = 0;
    double bare = 0;
    for (auto _ : state) {
        auto& database = *book.store().database();
        database.execute(nFILL);
        bare += seconds([&] { database.execute(nEMPTY); });
        database.execute(nFILL);
        const double once = seconds([&] {
            if (!book.store().reassignGroup(1, 0))
                state.SkipWithError("not reassigned");
        });
        ours += once;
        state.SetIterationTime(once);
    }
    state.counters["ratio"] = ours / bare;
}
BENCHMARK(reassignGroup)->UseManualTime()->Unit(benchmark::kMillisecond);

void openPhonebook(benchmark::State& state)
{
    Book book;
    const auto file = book.store().file();
    for (auto _ : state)
        benchmark::DoNotOptimize(ContactStore(file, "de").state());
}
BENCHMARK(openPhonebook)->Unit(benchmark::kMillisecond);

} // namespace
