// What stands on a form: a text field or a selection field.

#pragma once

#include <chrono>

#include <framework/display/Item.h>
#include <framework/display/TranslationInfo.h>

namespace DisplayAPI {

class Command;
struct FrameField;
struct Key;

// What a key did to a field; the later includes the earlier.
enum class FieldReaction { NotMine, Silent, Changed, Ok };

class FRAMEWORK_API Field : public Item {
public:
    explicit Field(TranslationInfo label);
    ~Field() override;

    void setLabel(TranslationInfo label);

    // What OK reports instead of the telephone's OK command; null for that one.
    virtual Command* getOkCommand() const { return nullptr; }

    // For the form.
    virtual void paint(FrameField& field) const = 0;
    virtual FieldReaction keyPressed(const Key& key) = 0;
    virtual FieldReaction timePassed(std::chrono::milliseconds now) = 0;
    // A pending multi-tap letter becomes part of the text.
    virtual FieldReaction commit() = 0;

protected:
    const TranslationInfo& label() const { return m_label; }

private:
    TranslationInfo m_label;
};

} // namespace DisplayAPI
