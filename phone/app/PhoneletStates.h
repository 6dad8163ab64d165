// The small numbers that phonelets keep across restarts, in one file of the profile.

#pragma once

#include <filesystem>
#include <map>
#include <string>

class PhoneletStates {
public:
    // A file that is missing or damaged is an empty one.
    explicit PhoneletStates(std::filesystem::path file);

    // 0 when never stored.
    int get(const std::string& name) const;
    // Written at once, whole or not at all; logged when that fails.
    void set(const std::string& name, int state);

private:
    void write() const;

    std::filesystem::path m_file;
    std::map<std::string, int> m_states;
};
