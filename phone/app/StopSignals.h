// Turns the signals that ask a program to end into something that can be waited for. Made before
// any thread is.

#pragma once

class StopSignals {
public:
    StopSignals();
    ~StopSignals();

    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    // A file descriptor that can be read once the program is to end.
    int descriptor() const { return m_fd; }
    // Returns when it is.
    void wait() const;

private:
    int m_fd;
};
