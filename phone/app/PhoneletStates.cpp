#include "app/PhoneletStates.h"

#include <fstream>
#include <sstream>

#include <nlohmann/json.hpp>

#include "app/PhoneLog.h"

namespace {
constexpr char nSOURCE[] = "./phone/app/PhoneletStates";
} // namespace

PhoneletStates::PhoneletStates(std::filesystem::path file)
    : m_file(std::move(file))
{
    std::ifstream in(m_file);
    if (!in)
        return;
    std::ostringstream text;
    text << in.rdbuf(); // a folder of that name can be opened, but only fails when it is read
    const auto json = nlohmann::json::parse(text.str(), nullptr, false);
    if (!json.is_object()) {
        PHONE_ERROR("%s is damaged: the phonelets start anew", m_file.c_str());
        return;
    }
    for (const auto& [name, state] : json.items()) {
        if (state.is_number_integer())
            m_states[name] = state.get<int>();
    }
}

int PhoneletStates::get(const std::string& name) const
{
    const auto state = m_states.find(name);
    return state == m_states.end() ? 0 : state->second;
}

void PhoneletStates::set(const std::string& name, int state)
{
    if (const auto known = m_states.find(name); known != m_states.end() && known->second == state)
        return;
    m_states[name] = state;
    write();
}

void PhoneletStates::write() const
{
    auto beside = m_file;
    beside += ".new";
    std::ofstream out(beside);
    out << nlohmann::json(m_states).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
    out.close();
    std::error_code error;
    if (out)
        std::filesystem::rename(beside, m_file, error);
    if (!out || error)
        PHONE_ERROR("%s cannot be written: the state of phonelets is lost at the next start", m_file.c_str());
}
