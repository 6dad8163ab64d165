#include "DirectoryFields.h"

#include <framework/display/Form.h>
#include <framework/display/TextField.h>

#include "EventContext.h"
#include "PhonebookLog.h"

using DisplayAPI::TextField;

namespace {

constexpr char nSOURCE[] = "./src/DirectoryFields";

struct FieldKind {
    const char* label;
    TextField::Type type;
    unsigned maxLength; // in characters
};

constexpr std::array<FieldKind, DirectoryFields::nFIELDS> nFIELD_KINDS{{
    {"last.name", TextField::TEXT, 30},
    {"first.name", TextField::TEXT, 30},
    {"business1", TextField::NUMBER, 25},
    {"business2", TextField::NUMBER, 25},
    {"mobile", TextField::NUMBER, 25},
    {"private", TextField::NUMBER, 25},
    {"company", TextField::TEXT, 25},
    {"address", TextField::TEXT, 25},
    {"address2", TextField::TEXT, 25},
    {"job.function", TextField::TEXT, 25},
    {"email", TextField::TEXT, 25},
}};

} // namespace

DirectoryFields::DirectoryFields() = default;

DirectoryFields::~DirectoryFields() = default;

void DirectoryFields::appendTo(EventContext* pContext, DisplayAPI::Form& form)
{
    PB_TRACE("DirectoryFields::appendTo()");
    for (std::size_t field = 0; field < nFIELDS; ++field) {
        const auto& kind = nFIELD_KINDS[field];
        auto& pField = m_fields[field];
        pField =
            std::make_unique<TextField>(DisplayAPI::TranslationInfo(kind.label, pContext->m_pTranslator));
        pField->setFieldType(kind.type);
        pField->setMaxLength(kind.maxLength);
        form.append(pField.get());
    }
}

DirectoryFields::Field DirectoryFields::fieldOf(const DisplayAPI::Item* pItem) const
{
    PB_TRACE("DirectoryFields::fieldOf()");
    std::size_t field = 0;
    while (field < nFIELDS && pItem != m_fields[field].get())
        ++field;
    return static_cast<Field>(field);
}
