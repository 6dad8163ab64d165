// A row of a list. The list owns it from the moment it was added.

#pragma once

#include <framework/display/TranslationInfo.h>

namespace DisplayAPI {

class FRAMEWORK_API ListItem {
public:
    // `kind` is 1 in search lists and 0 in exclusive lists.
    ListItem(TranslationInfo text, int kind);
    virtual ~ListItem();

    ListItem(const ListItem&) = delete;
    ListItem& operator=(const ListItem&) = delete;

    // What is shown: translated now.
    std::string getText() const;
    int getKind() const { return m_kind; }
    int getIcon() const;

    // Changes the row in place; the list paints it at its next frame.
    void set(int icon, const std::string& text);

protected:
    ListItem(TranslationInfo text, int kind, int icon);

private:
    TranslationInfo m_text;
    int m_kind;
    int m_icon = 0;
};

} // namespace DisplayAPI
