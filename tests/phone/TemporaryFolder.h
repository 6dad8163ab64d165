// A folder for one test, gone with it.

#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::filesystem::path& parent = fast())
    {
        auto name = (parent / "deskbook-XXXXXX").string();
        m_path = mkdtemp(name.data());
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(m_path, ignored);
    }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    std::filesystem::path operator/(const std::string& name) const { return m_path / name; }

    void write(const std::string& name, const std::string& text) const
    {
        std::ofstream(m_path / name) << text;
    }
    std::string read(const std::string& name) const
    {
        std::ostringstream text;
        text << std::ifstream(m_path / name).rdbuf();
        return text.str();
    }

private:
    // In memory where possible: the stores wait for the disk at every change.
    static std::filesystem::path fast()
    {
        const std::filesystem::path memory = "/dev/shm";
        return std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
    }

    std::filesystem::path m_path;
};
