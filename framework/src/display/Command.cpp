#include <framework/display/Command.h>

#include <utility>

namespace DisplayAPI {

Command::Command(int type, TranslationInfo label)
    : m_type(type)
    , m_label(std::move(label))
{
}

Command::~Command()
{
    expire();
}

} // namespace DisplayAPI
