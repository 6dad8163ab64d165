// What a person at the telephone waits for: from its start to the first frame, from a key to the next
// one. The whole telephone runs, with its store, its plug-in and its frames; nothing is faked but time.

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <framework/display/Frame.h>

#include "app/Phone.h"
#include "app/PhoneKey.h"
#include "app/Resources.h"
#include "directory/ContactStore.h"
#include "directory/DirectoryService.h"

namespace {

// A profile with made-up contacts, and telephones that run on it.
class Desk {
public:
    explicit Desk(int contacts)
    {
        char folder[] = "/tmp/bench-phone-XXXXXX";
        if (!mkdtemp(folder))
            throw std::runtime_error("no folder for the profile");
        m_folder = folder;
        ContactStore store(DirectoryService::fileIn(m_folder), "en");
        const auto stored = store.inTransaction([&] {
            for (int i = 0; i < contacts; ++i) {
                Contact contact;
                contact.id = ContactStore::newId();
                contact.surname = "Surname " + std::to_string((i * 7919) % contacts);
                contact.firstname = "First";
                contact.office = "+4930" + std::to_string(i);
                contact.defaultNumber = DefaultNumber::Office;
                store.put(contact);
            }
            return true;
        });
        if (!stored)
            throw std::runtime_error("the contacts cannot be stored");
    }
    ~Desk() { std::filesystem::remove_all(m_folder); }

    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    std::unique_ptr<Phone> telephone()
    {
        const auto resources = Resources::ofProgram();
        PhoneOptions options;
        options.profile = Profile::in(m_folder);
        options.catalogues = resources.catalogues;
        options.phonelets = {{"phonebook", resources.phonebook}};
        options.items = {{"language", "en"}};
        options.clock = &m_clock;
        auto phone = Phone::create(std::move(options));
        if (!phone)
            throw std::runtime_error(phone.error().sentence);
        return std::move(phone.value());
    }

private:
    std::filesystem::path m_folder;
    ManualClock m_clock;
};

void press(Phone& phone, const char* word)
{
    const auto keys = keysFromWord(word);
    for (const auto& key : *keys)
        phone.keys().press(key);
    phone.runPending();
}

void StartToFirstFrame(benchmark::State& state)
{
    Desk desk(static_cast<int>(state.range(0)));
    for ([[maybe_unused]] auto round : state) {
        auto phone = desk.telephone();
        phone->start();
        phone->runPending();
        if (phone->frames().latest()->number == 0)
            state.SkipWithError("no frame");
        state.PauseTiming();
        phone.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(StartToFirstFrame)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();

// `word` and `back` in turn, so that every press makes a new frame; `first` leads to their screen.
void keyToFrame(benchmark::State& state, const char* word, const char* back,
                const std::vector<const char*>& first = {})
{
    Desk desk(static_cast<int>(state.range(0)));
    auto phone = desk.telephone();
    phone->start();
    phone->runPending();
    press(*phone, "phonebook");
    press(*phone, "down");
    for (const char* key : first)
        press(*phone, key);
    bool there = false;
    for ([[maybe_unused]] auto round : state) {
        const auto before = phone->frames().latest()->number;
        press(*phone, there ? back : word);
        there = !there;
        if (phone->frames().latest()->number == before)
            state.SkipWithError("the key changed nothing");
    }
}
BENCHMARK_CAPTURE(keyToFrame, arrow, "down", "up")->Arg(100)->Arg(100'000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(keyToFrame, letter, "text:s", "clear")
    ->Arg(100)
    ->Arg(100'000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(keyToFrame, menu, "menu", "back")->Arg(100)->Arg(100'000)->Unit(benchmark::kMicrosecond);
// The second choice of a contact's menu is its form.
BENCHMARK_CAPTURE(keyToFrame, form, "ok", "back", {"menu", "down"})
    ->Arg(100)
    ->Arg(100'000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(keyToFrame, formLetter, "text:s", "clear", {"menu", "down", "ok"})
    ->Arg(100)
    ->Arg(100'000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(keyToFrame, homeAndOpen, "home", "phonebook")
    ->Arg(100)
    ->Arg(100'000)
    ->Unit(benchmark::kMicrosecond);

} // namespace
