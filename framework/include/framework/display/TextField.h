// A line of text or a number on a form. Every edit is one item event; OK is reported to the form's
// command listener unless the field was told not to.
//
// In a text, digit keys enter letters by repeated presses, and `*` enters signs. Words begin with a
// capital there, but not in an e-mail address; `#` changes that, see FrameField::Letters. A number
// takes digits, `*`, `#` and `+` (the telephone gives `+` as typed text when 0 is held down); other
// characters are not entered.
// [phonelet-thread]

#pragma once

#include <memory>
#include <string>

#include <framework/display/Field.h>

namespace DisplayAPI {

class Command;

class FRAMEWORK_API TextField final : public Field {
public:
    enum Type : int { TEXT = 1, EMAIL = 2, NUMBER = 3 };

    explicit TextField(TranslationInfo label);
    ~TextField() override;

    // Without a pending letter. setString() keeps the whole text, whatever the limit.
    std::string getString() const;
    void setString(const std::string& text);

    // In characters; limits typing, never a value that is set. All bits set (-1): no limit.
    void setMaxLength(unsigned characters);
    void setFieldType(int type);
    // A FieldIcon.
    void setIcon(int icon);
    void setReadOnly(bool readOnly);
    // What OK on this field reports instead of the telephone's OK command; null for that one.
    void setOkCommand(Command* command);
    Command* getOkCommand() const override;
    void setNotifyOnOk(bool notify);

    void paint(FrameField& field) const override;
    FieldReaction keyPressed(const Key& key) override;
    FieldReaction timePassed(std::chrono::milliseconds now) override;
    FieldReaction commit() override;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace DisplayAPI
