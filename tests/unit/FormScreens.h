// A form on a telephone of fakes: read and filled by its fields' labels.

#pragma once

#include <string>
#include <vector>

#include <framework/display/Form.h>
#include <framework/display/MenuCommand.h>
#include <framework/display/SelectionField.h>
#include <framework/display/TextField.h>

#include "PhonebookScreens.h"

class FormScreens : public PhonebookScreens {
protected:
    using FrameField = DisplayAPI::FrameField;

    static constexpr auto SAVE = Kind::Save;
    static constexpr auto LEFT = Kind::Left;
    static constexpr auto RIGHT = Kind::Right;

    // The form below any popup.
    DisplayAPI::Form& form()
    {
        auto* pForm = dynamic_cast<DisplayAPI::Form*>(display().getCurrent());
        if (pForm)
            m_pForm = pForm;
        return *m_pForm;
    }
    // All fields, also those that there is no room for.
    std::vector<FrameField> fields()
    {
        DisplayAPI::FrameScreen painted;
        form().paint(painted, 100);
        return painted.fields;
    }
    FrameField field(const std::string& label)
    {
        for (const auto& painted : fields()) {
            if (painted.label == label)
                return painted;
        }
        ADD_FAILURE() << "no field " << label;
        return {};
    }
    std::string value(const std::string& label) { return field(label).value; }
    std::string focused()
    {
        for (const auto& painted : fields()) {
            if (painted.focused)
                return painted.label;
        }
        return "";
    }

    void focus(const std::string& label) { press(Kind::Row, field(label).position); }
    template <typename Widget> Widget& widget(const std::string& label)
    {
        focus(label);
        return dynamic_cast<Widget&>(*form().getSelectedItem());
    }
    DisplayAPI::SelectionField& selection(const std::string& label)
    {
        return widget<DisplayAPI::SelectionField>(label);
    }
    void press(Kind key, int index = 0) { host.press(key, index); }

    // Replaces what a text field holds, as a user does.
    void fill(const std::string& label, const std::string& text)
    {
        focus(label);
        press(Kind::ClearAll);
        type(text);
    }
    void step(const std::string& label, Kind direction = RIGHT)
    {
        focus(label);
        press(direction);
    }
    void pick(const std::string& label, const std::string& choice)
    {
        focus(label);
        for (int steps = field(label).choices; steps > 0 && value(label) != choice; --steps)
            press(RIGHT);
        ASSERT_EQ(value(label), choice);
    }
    // The texts that a selection field steps through, from its first choice on.
    Texts choices(const std::string& label)
    {
        auto& chosen = selection(label);
        auto* pBefore = chosen.getSelectedCommand();
        Texts texts;
        for (int position = 0; position < field(label).choices; ++position) {
            chosen.setSelectedIndex(position);
            texts.push_back(value(label));
        }
        chosen.setSelectedCommand(pBefore);
        return texts;
    }

private:
    DisplayAPI::Form* m_pForm = nullptr;
};
