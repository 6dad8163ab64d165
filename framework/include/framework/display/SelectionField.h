// One of several commands, on a form. Stepping through them is silent. OK reports once: as an OK
// command when the field informs on OK, else as an item event.
// [phonelet-thread]

#pragma once

#include <memory>
#include <vector>

#include <framework/display/Field.h>

namespace DisplayAPI {

class MenuCommand;

class FRAMEWORK_API SelectionField final : public Field {
public:
    explicit SelectionField(TranslationInfo label);
    ~SelectionField() override;

    // Commands are not owned. While none is selected, or the selected one was destroyed, the first
    // one is.
    void append(MenuCommand* command);
    // Takes all choices away and selects `chosen`, which need not be among those added later.
    void clear(MenuCommand* chosen);

    MenuCommand* getSelectedCommand() const;
    void setSelectedCommand(MenuCommand* command);
    // Position among the choices; -1 when the selected command is none of them.
    int getSelectedIndex() const;
    void setSelectedIndex(int index);

    void setNotifyOnOk(bool notify);

    void paint(FrameField& field) const override;
    FieldReaction keyPressed(const Key& key) override;
    FieldReaction timePassed(std::chrono::milliseconds now) override;
    FieldReaction commit() override;

private:
    struct Choice {
        MenuCommand* command = nullptr;
        std::weak_ptr<const void> alive;
    };

    std::vector<MenuCommand*> choices() const; // those alive
    void step(int direction);

    std::vector<Choice> m_choices;
    Choice m_selected;
    bool m_notifyOnOk = false;
};

} // namespace DisplayAPI
