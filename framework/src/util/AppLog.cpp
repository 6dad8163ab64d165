#include <framework/util/AppLog.h>

#include <atomic>
#include <cstdarg>
#include <cstdio>

namespace {

std::atomic<AppLogSink*> s_sink{nullptr};

} // namespace

AppLogSink::~AppLogSink() = default;

bool AppLog::isEnabled(const char* component, int level)
{
    const AppLogSink* sink = s_sink.load(std::memory_order_acquire);
    return sink && sink->isEnabled(component, level);
}

void AppLog::log(const char* component, const char* file, int level, int line, const char* format, ...)
{
    AppLogSink* sink = s_sink.load(std::memory_order_acquire);
    if (!sink)
        return;

    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);

    std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    sink->write(component, file, level, line, text);
}

AppLogSink* AppLog::setSink(AppLogSink* sink)
{
    return s_sink.exchange(sink, std::memory_order_acq_rel);
}
