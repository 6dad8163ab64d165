// Waits for what nobody announces.

#pragma once

#include <chrono>
#include <functional>
#include <thread>

// Whether it comes about within ten seconds.
inline bool soon(const std::function<bool()>& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}
