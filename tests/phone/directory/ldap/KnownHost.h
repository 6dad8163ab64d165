// A name that only the test's own process can look up, beside those that the computer knows.

#pragma once

#include <string>
#include <vector>

class KnownHost {
public:
    // Numeric addresses, in the order in which they are found. Until it is destroyed.
    KnownHost(std::string name, std::vector<std::string> addresses);
    ~KnownHost();

    KnownHost(const KnownHost&) = delete;
    KnownHost& operator=(const KnownHost&) = delete;

private:
    const std::string m_name;
};
