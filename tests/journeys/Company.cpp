#include "Company.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

namespace {

SlapdOptions options(TestAuthority& authority)
{
    std::ostringstream people;
    people << std::ifstream(fs::path(SOURCE_DIR) / "tests" / "journeys" / "company.ldif").rdbuf();
    SlapdOptions options;
    options.people = people.str();
    options.certificate = authority.issue();
    return options;
}

} // namespace

Company& Company::shared()
{
    static Company company;
    return company;
}

// Programs are started from the server's folder, which what is in memory may not allow.
Company::Company()
    : m_folder(fs::temp_directory_path())
    , m_authority(folder(m_folder, "authority"))
    , m_server(folder(m_folder, "server"), options(m_authority))
{
}

std::string Company::folder(const TemporaryFolder& parent, const char* name)
{
    fs::create_directory(parent / name);
    return parent / name;
}

void Company::serve(bool on)
{
    if (on == m_serves)
        return;
    m_serves = on;
    if (on)
        m_server.restart();
    else
        m_server.kill();
}
