// The telephone's log: a file in the profile and, on demand, the standard error output.

#pragma once

#include <atomic>
#include <filesystem>
#include <memory>

#include <framework/util/AppLog.h>

namespace spdlog {
class logger;
} // namespace spdlog

// Takes the lines of AppLog as long as it lives.
class Log final : public AppLogSink {
public:
    enum class Echo { None, StandardError };

    // A file that cannot be written is said on the standard error output; the telephone goes on.
    Log(const std::filesystem::path& file, Echo echo);
    ~Log() override;

    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;

    // Lines up to this AppLog::Level are kept.
    // [any-thread]
    void setLevel(int level) { m_level = level; }

    bool isEnabled(const char* component, int level) const override;
    void write(const char* component, const char* file, int level, int line,
               const std::string& text) override;

private:
    std::shared_ptr<spdlog::logger> m_logger;
    std::atomic<int> m_level{AppLog::USER};
    AppLogSink* m_pBefore = nullptr;
};
