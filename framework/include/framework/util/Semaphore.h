// A counting semaphore; with count 1 a mutex that may be waited for with a limit.
//
// It is not re-entrant: taking it twice on one thread waits for ever. See CriticalSection.

#pragma once

#include <memory>

#include <framework/Export.h>

class FRAMEWORK_API Semaphore {
public:
    static constexpr long FOREVER = -1;

    explicit Semaphore(int count = 1);
    ~Semaphore();

    Semaphore(const Semaphore&) = delete;
    Semaphore& operator=(const Semaphore&) = delete;

    // Waits at most `ms` milliseconds, without limit for FOREVER. False when the time was over.
    // [any-thread]
    bool take(long ms = FOREVER);

    // [any-thread]
    void give();

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

// Holds a Semaphore while it lives, if it got it in time.
class FRAMEWORK_API SemaphoreGuard {
public:
    explicit SemaphoreGuard(Semaphore& semaphore, long ms = Semaphore::FOREVER);
    ~SemaphoreGuard();

    SemaphoreGuard(const SemaphoreGuard&) = delete;
    SemaphoreGuard& operator=(const SemaphoreGuard&) = delete;

    explicit operator bool() const { return m_pSemaphore != nullptr; }
    // Gives it back before the end of the scope.
    void release();

private:
    Semaphore* m_pSemaphore;
};
