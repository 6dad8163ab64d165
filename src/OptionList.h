// A list of options of which the one under the cursor is the chosen one.
//
// Options are numbered by their place among the keys that they are made from. The widget is built
// once and kept.

#pragma once

#include <memory>
#include <optional>
#include <vector>

namespace DisplayAPI {
class ExclusiveList;
}
class EventContext;

class OptionList {
public:
    // Translation keys.
    OptionList(const char* title, std::vector<const char*> keys);
    ~OptionList();

    // The ways to write a name, numbered as displayMode.
    static OptionList nameFormats();

    void construct(EventContext* pContext);
    // Puts the cursor on an option, on the first one for a number that is none.
    void select(int option);
    // Whether the cursor has left the option that was selected.
    bool isChanged() const;
    // The option under the cursor; none on a row that is not one.
    std::optional<int> chosen() const;
    // Null until it is built.
    DisplayAPI::ExclusiveList* widget() const;

private:
    const char* m_title;
    std::vector<const char*> m_keys;
    std::vector<int> m_rows; // by option
    int m_selectedRow = 0;
    std::unique_ptr<DisplayAPI::ExclusiveList> m_pWidget;
};
