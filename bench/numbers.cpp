// What a number's canonical form costs: one at a time, and for the result of a directory search, 1,000
// rows with four numbers each.

#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <framework/services/Utils.h>
#include <testing/FakeDirectoryService.h>

#include "PhonebookList.h"
#include "app/EventThread.h"
#include "calls/DialPlan.h"
#include "calls/DigitAnalysis.h"
#include "calls/NumberFormat.h"

namespace {

constexpr int nROWS = 1000;

DialPlanRules company()
{
    DialPlanRules rules;
    rules.countryCode = "49";
    rules.areaCode = "30";
    rules.outsideLine = "0";
    rules.otherOutsideLines = {"9"};
    rules.internalDigits = 4;
    rules.leastLocalDigits = 3;
    rules.enterprisePrefix = "+49 30 23125";
    rules.emergencyNumbers = {"110", "112"};
    rules.serviceNumbers = {"115", "116xxx", "118xx"};
    return rules;
}

const std::vector<std::string>& numbers()
{
    static const std::vector<std::string> all{
        "+49 (0)30 23125-471", "030/1234567",       "0170 1234567", "+44 20 7946 0958",
        "0044 20 7946 0958",   "0 030 1234567",     "4711",         "1234567",
        "0800 FLOWERS",        "+1 (202) 555-0143", "089/722-4711", "tel:+49-30-1234567"};
    return all;
}

// Rows as a search finds them.
std::vector<AttributeList> foundRows()
{
    std::vector<AttributeList> rows;
    std::size_t next = 0;
    const auto number = [&next] { return numbers()[next++ % numbers().size()]; };
    for (int i = 0; i < nROWS; ++i) {
        rows.push_back({{Utils::SURNAME, std::to_string(i)},
                        {Utils::OFFICE, number()},
                        {Utils::OFFICE2, number()},
                        {Utils::MOBILE, number()},
                        {Utils::PRIVATE, number()}});
    }
    rows.push_back({{"trailer", "false"}});
    return rows;
}

void convertToCanonical(benchmark::State& state)
{
    const ManualClock clock;
    EventThread events(clock);
    DigitAnalysis digits(company(), DialTimes(), clock, events, events);
    FakeDirectoryService directory;
    directory.status = DIRECTORY_SUCCESS;
    directory.found = foundRows();
    PhonebookList list(&directory, &digits);
    PhonebookSearchCriteria criteria({}, "", true);
    for (auto _ : state) {
        state.PauseTiming();
        list.populate(criteria, true);
        if (list.size() != nROWS)
            state.SkipWithError("rows are missing");
        state.ResumeTiming();
        list.convertToCanonical();
    }
}
BENCHMARK(convertToCanonical)->Unit(benchmark::kMillisecond);

void canonical(benchmark::State& state)
{
    const DialPlan plan(company());
    std::size_t next = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(plan.canonical(numbers()[next++ % numbers().size()]));
}
BENCHMARK(canonical);

void dialString(benchmark::State& state)
{
    const DialPlan plan(company());
    std::size_t next = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(plan.dialString(numbers()[next++ % numbers().size()]));
}
BENCHMARK(dialString);

void shown(benchmark::State& state)
{
    const NumberFormat format("49");
    for (auto _ : state)
        benchmark::DoNotOptimize(format.shown("+49301234567"));
}
BENCHMARK(shown);

} // namespace
