#include <framework/util/Semaphore.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

class Semaphore::Impl {
public:
    explicit Impl(int count)
        : m_count(count)
    {
    }

    bool take(long ms)
    {
        std::unique_lock lock(m_mutex);
        const auto available = [this] { return m_count > 0; };
        if (ms == FOREVER)
            m_given.wait(lock, available);
        else if (!m_given.wait_for(lock, std::chrono::milliseconds(ms), available))
            return false;
        --m_count;
        return true;
    }

    void give()
    {
        const std::lock_guard lock(m_mutex);
        ++m_count;
        // Under the lock: the waiter may destroy the semaphore as soon as it has it.
        m_given.notify_one();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_given;
    int m_count;
};

Semaphore::Semaphore(int count)
    : m_impl(std::make_unique<Impl>(count))
{
}

Semaphore::~Semaphore() = default;

bool Semaphore::take(long ms)
{
    return m_impl->take(ms);
}

void Semaphore::give()
{
    m_impl->give();
}

SemaphoreGuard::SemaphoreGuard(Semaphore& semaphore, long ms)
    : m_pSemaphore(semaphore.take(ms) ? &semaphore : nullptr)
{
}

SemaphoreGuard::~SemaphoreGuard()
{
    release();
}

void SemaphoreGuard::release()
{
    if (!m_pSemaphore)
        return;
    m_pSemaphore->give();
    m_pSemaphore = nullptr;
}
