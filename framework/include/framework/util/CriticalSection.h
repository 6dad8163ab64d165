// Holds a Semaphore of count 1 for its scope, without limit of waiting. Unlike the semaphore it is
// re-entrant: a thread that holds it through a CriticalSection may take it again so.
//
// A semaphore that is guarded this way is taken through CriticalSection only, never by take().

#pragma once

#include <framework/Export.h>

class Semaphore;

class FRAMEWORK_API CriticalSection {
public:
    // [any-thread]
    explicit CriticalSection(Semaphore& semaphore);
    ~CriticalSection();

    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

private:
    Semaphore& m_semaphore;
};
