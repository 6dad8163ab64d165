#include "system/Log.h"

#include <cstdio>
#include <tuple>
#include <vector>

#include <sys/stat.h>

#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <spdlog/spdlog.h>

namespace {

constexpr std::size_t LARGEST_FILE = 5 * 1024 * 1024;
constexpr std::size_t OLDER_FILES = 2;

spdlog::level::level_enum importanceOf(int level)
{
    switch (level) {
    case AppLog::ERROR:
        return spdlog::level::err;
    case AppLog::REFUSED:
        return spdlog::level::warn;
    case AppLog::USER:
        return spdlog::level::info;
    default:
        return spdlog::level::trace;
    }
}

// Names and numbers stand in the log, and the folder may be one that everybody reads.
spdlog::file_event_handlers forItsOwnerOnly()
{
    spdlog::file_event_handlers handlers;
    handlers.after_open = [](const spdlog::filename_t&, std::FILE* file) {
        std::ignore = ::fchmod(::fileno(file), S_IRUSR | S_IWUSR);
    };
    return handlers;
}

} // namespace

Log::Log(const std::filesystem::path& file, Echo echo)
{
    std::vector<spdlog::sink_ptr> sinks;
    try {
        sinks.push_back(std::make_shared<spdlog::sinks::rotating_file_sink_mt>(
            file.string(), LARGEST_FILE, OLDER_FILES, false, forItsOwnerOnly()));
    } catch (const spdlog::spdlog_ex& error) {
        std::fprintf(stderr, "There is no log: %s\n", error.what());
    }
    if (echo == Echo::StandardError)
        sinks.push_back(std::make_shared<spdlog::sinks::stderr_sink_mt>());
    m_logger = std::make_shared<spdlog::logger>("deskphone", sinks.begin(), sinks.end());
    m_logger->set_pattern("%Y-%m-%dT%H:%M:%S.%e %L %v");
    m_logger->set_level(spdlog::level::trace);
    m_logger->flush_on(spdlog::level::info);
    m_pBefore = AppLog::setSink(this);
}

Log::~Log()
{
    AppLog::setSink(m_pBefore);
}

bool Log::isEnabled(const char*, int level) const
{
    return level <= m_level;
}

void Log::write(const char* component, const char* file, int level, int line, const std::string& text)
{
    // Some texts end in a newline of their own, and a text from outside may hold one anywhere.
    std::string oneLine = text;
    while (!oneLine.empty() && oneLine.back() == '\n')
        oneLine.pop_back();
    for (char& c : oneLine) {
        if (static_cast<unsigned char>(c) < 0x20)
            c = ' ';
    }
    m_logger->log(importanceOf(level), "{} {}:{} {}", component, file, line, oneLine);
}
