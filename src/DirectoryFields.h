// The text fields of a person in the corporate directory, as its forms show them: the same fields in the
// same order, whatever they are for.

#pragma once

#include <array>
#include <cstddef>
#include <memory>

namespace DisplayAPI {
class Form;
class Item;
class TextField;
} // namespace DisplayAPI
class EventContext;

class DirectoryFields {
public:
    enum Field : std::size_t {
        SURNAME,
        FIRSTNAME,
        OFFICE,
        OFFICE2,
        MOBILE,
        PRIVATE,
        COMPANY,
        ADDRESS,
        ADDRESS2,
        JOB_FUNCTION,
        EMAIL,
        nFIELDS
    };

    DirectoryFields();
    ~DirectoryFields();

    // Creates them, empty, and appends them to the form.
    void appendTo(EventContext* pContext, DisplayAPI::Form& form);

    // Both only after appendTo().
    DisplayAPI::TextField& operator[](std::size_t field) const { return *m_fields[field]; }
    // Which of them it is; nFIELDS for anything else.
    Field fieldOf(const DisplayAPI::Item* pItem) const;

private:
    std::array<std::unique_ptr<DisplayAPI::TextField>, nFIELDS> m_fields;
};
