// A list of which exactly one row is chosen: the row under the cursor. OK arrives as an OK
// command, Back as a BACK command. Indices outside the list are ignored.
// [phonelet-thread]

#pragma once

#include <memory>
#include <vector>

#include <framework/display/Displayable.h>
#include <framework/display/ListItem.h>

namespace DisplayAPI {

class FRAMEWORK_API ExclusiveList final : public Displayable {
public:
    ExclusiveList();
    ~ExclusiveList() override;

    // The list takes ownership of the row and returns its index; -1 for null.
    int append(ListItem* row);
    int size() const;

    // -1 only while the list is empty.
    int getSelectedIndex() const;
    void setSelectedIndex(int index);
    void setWaitAnimation(bool on);

    FrameRole role() const override;
    void paint(FrameScreen& screen, int rows) const override;
    bool keyPressed(const Key& key) override;

private:
    std::vector<std::unique_ptr<ListItem>> m_rows;
    int m_selected = -1;
    mutable int m_top = 0;
    bool m_waiting = false;
};

} // namespace DisplayAPI
