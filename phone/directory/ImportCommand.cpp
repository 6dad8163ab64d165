#include "ImportCommand.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <functional>
#include <ostream>
#include <string>

#include <unistd.h>

#include "DirectoryService.h"
#include "Importer.h"

namespace {

constexpr int nFAILED = 1;
constexpr int nCANCELLED = 130; // as shells have it for SIGINT

volatile std::sig_atomic_t cancelled = 0;

// While it lives, Ctrl-C asks for an end instead of ending the program.
class CancelBySignal {
public:
    CancelBySignal()
    {
        cancelled = 0;
        struct sigaction action {};
        action.sa_handler = [](int) { cancelled = 1; };
        for (std::size_t i = 0; i < nSIGNALS.size(); ++i)
            ::sigaction(nSIGNALS[i], &action, &m_before[i]);
    }
    ~CancelBySignal()
    {
        for (std::size_t i = 0; i < nSIGNALS.size(); ++i)
            ::sigaction(nSIGNALS[i], &m_before[i], nullptr);
    }
    CancelBySignal(const CancelBySignal&) = delete;
    CancelBySignal& operator=(const CancelBySignal&) = delete;

private:
    static constexpr std::array nSIGNALS{SIGINT, SIGTERM};
    std::array<struct sigaction, nSIGNALS.size()> m_before{};
};

// One line that is written over and over, on a terminal only.
class ProgressBar {
public:
    ProgressBar(std::ostream& out, const char* what)
        : m_out(out)
        , m_what(what)
        , m_visible(::isatty(STDERR_FILENO) != 0)
    {
    }
    ~ProgressBar()
    {
        if (m_visible && m_percent >= 0)
            m_out << "\r\x1b[K" << std::flush;
    }
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    bool operator()(std::size_t done, std::size_t all)
    {
        const int percent = all == 0 ? 100 : static_cast<int>(std::min(done, all) * 100 / all);
        if (m_visible && percent != m_percent) {
            constexpr int width = 40;
            const auto filled = static_cast<std::size_t>(percent * width / 100);
            m_out << '\r' << m_what << " [" << std::string(filled, '=') << std::string(width - filled, ' ')
                  << "] " << percent << "%" << std::flush;
            m_percent = percent;
        }
        return cancelled == 0;
    }

private:
    std::ostream& m_out;
    const char* m_what;
    const bool m_visible;
    int m_percent = -1;
};

const char* fateName(CardFate fate)
{
    switch (fate) {
    case CardFate::New:
        return "new";
    case CardFate::Changed:
        return "changed";
    case CardFate::Same:
        return "duplicate";
    case CardFate::Invalid:
        return "invalid";
    }
    return "";
}

// Every card in the rehearsal; otherwise those that something is wrong with.
void report(const std::vector<PlannedCard>& cards, bool all, std::ostream& out)
{
    for (const auto& card : cards) {
        if (!all && card.fate != CardFate::Invalid && card.problems.empty())
            continue;
        const auto name = listedName(card.contact);
        out << fateName(card.fate) << "  line " << card.line << (name.empty() ? "" : ": ") << name;
        if (!card.reason.empty())
            out << "  (" << card.reason << ")";
        out << '\n';
        for (const auto& problem : card.problems)
            out << "    " << problem << '\n';
        if (!all)
            continue;
        for (const auto& what : card.notShown)
            out << "    kept, not shown: " << what << '\n';
    }
}

void summarise(const std::vector<PlannedCard>& cards, bool dryRun, std::ostream& out)
{
    std::array<std::size_t, 4> counts{};
    for (const auto& card : cards)
        ++counts[static_cast<std::size_t>(card.fate)];
    out << (dryRun ? "Would import: " : "Imported: ");
    const char* between = "";
    for (const auto fate : {CardFate::New, CardFate::Changed, CardFate::Same, CardFate::Invalid}) {
        out << between << counts[static_cast<std::size_t>(fate)] << ' ' << fateName(fate);
        between = ", ";
    }
    out << ".\n";
}

int fail(const std::string& sentence, std::ostream& errors)
{
    if (cancelled != 0) {
        errors << "Cancelled. Nothing was imported.\n";
        return nCANCELLED;
    }
    errors << sentence << '\n';
    return nFAILED;
}

} // namespace

int runImport(const ImportOptions& options, std::ostream& out, std::ostream& errors)
{
    const CancelBySignal cancel;
    ContactStore store(DirectoryService::fileIn(options.profile), "");
    if (store.state() == ContactStore::State::Unusable ||
        (store.state() == ContactStore::State::ReadOnly && !options.dryRun))
        return fail(store.notice(), errors);

    const auto pictures = options.pictures.empty() ? options.profile / "pictures" : options.pictures;
    Importer importer(store, pictures, options.groupSlots, options.ownGroup);
    ProgressBar reading(errors, "Reading");
    if (const auto read = importer.read(options.file, std::ref(reading)); !read)
        return fail(read.error().sentence, errors);
    if (!options.dryRun) {
        ProgressBar writing(errors, "Importing");
        if (const auto applied = importer.apply(std::ref(writing)); !applied)
            return fail(applied.error().sentence, errors);
    }
    report(importer.cards(), options.dryRun, out);
    summarise(importer.cards(), options.dryRun, out);
    return 0;
}
