// A base screen of fields. Up and Down move between them, Left and Right move the cursor or step
// a selection. OK arrives as an OK command from a field that reports it, the Save key as SAVE.
// Fields are not owned; destroying one takes it off the form.
// [phonelet-thread]

#pragma once

#include <chrono>
#include <memory>
#include <vector>

#include <framework/display/Displayable.h>

namespace DisplayAPI {

class Command;
class Field;
class Item;
class ItemStateListener;
class SelectionField;
enum class FieldReaction;

class FRAMEWORK_API Form final : public Displayable {
public:
    // `kind` makes no difference.
    explicit Form(int kind);
    ~Form() override;

    void append(Field* field);
    void clear();
    // The field with the form's options stands below the others. null takes it away.
    void setOptions(SelectionField* options);

    // The field that has the focus; null on an empty form. Selecting one that is not on the
    // form does nothing; any other shows as much from the form's beginning as it can.
    Item* getSelectedItem() const;
    void setSelectedItem(Item* item);

    void setItemStateListener(ItemStateListener* listener);

    // Whether the soft keys have a Save key; they do unless told not to. The key itself is reported
    // all the same.
    void setOffersSave(bool offers);
    bool offersSave() const;

    // What OK reports from the field that has the focus; null for the telephone's own OK.
    const Command* getOkCommand() const;

    FrameRole role() const override;
    void paint(FrameScreen& screen, int rows) const override;
    bool keyPressed(const Key& key) override;
    void timePassed(std::chrono::milliseconds now) override;

private:
    struct Entry {
        Field* field = nullptr;
        std::weak_ptr<const void> alive;
    };

    std::vector<Field*> fields() const; // those alive, the options last
    Field* selected() const;
    void select(int index);
    void commit();
    bool fieldKeyPressed(const Key& key);
    void reported(Field& field, FieldReaction reaction);

    std::vector<Entry> m_fields;
    Entry m_options;
    Item* m_pSelected = nullptr;
    mutable int m_top = 0;
    bool m_offersSave = true;
    ItemStateListener* m_pItemStateListener = nullptr;
};

} // namespace DisplayAPI
