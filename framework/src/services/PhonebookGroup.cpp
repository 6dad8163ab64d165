#include <framework/services/PhonebookGroup.h>

#include <charconv>

PhonebookGroup::PhonebookGroup() = default;

PhonebookGroup::PhonebookGroup(int id, std::string name)
    : m_id(id)
    , m_name(std::move(name))
{
}

PhonebookGroup::~PhonebookGroup() = default;

int PhonebookGroup::groupTagToIndex(const std::string& tag)
{
    int index = 0;
    const char* end = tag.data() + tag.size();
    const auto [stopped, error] = std::from_chars(tag.data(), end, index);
    return error == std::errc() && stopped == end && index > 0 ? index : 0;
}

std::string PhonebookGroup::groupIndexToTag(int index)
{
    return index > 0 ? std::to_string(index) : "0";
}
