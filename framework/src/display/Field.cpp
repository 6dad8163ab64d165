#include <framework/display/Field.h>

#include <utility>

#include "UiLock.h"

namespace DisplayAPI {

Field::Field(TranslationInfo label)
    : m_label(std::move(label))
{
}

Field::~Field() = default;

void Field::setLabel(TranslationInfo label)
{
    const UiLock lock;
    m_label = std::move(label);
}

} // namespace DisplayAPI
