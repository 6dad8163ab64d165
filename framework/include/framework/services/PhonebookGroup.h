// A group of contacts. Its id is its index: 1 for the first slot; 0 stands for "no group".
//
// A group's tag is how records name it: the index as decimal text.

#pragma once

#include <string>

#include <framework/Export.h>

class FRAMEWORK_API PhonebookGroup {
public:
    PhonebookGroup();
    PhonebookGroup(int id, std::string name);
    ~PhonebookGroup();

    int getId() const { return m_id; }
    void setId(int id) { m_id = id; }
    const std::string& getName() const { return m_name; }
    void setName(const std::string& name) { m_name = name; }

    // "3" -> 3; "", "0" and anything that is no number -> 0.
    static int groupTagToIndex(const std::string& tag);
    // 3 -> "3"; 0 and below -> "0".
    static std::string groupIndexToTag(int index);

private:
    int m_id = 0;
    std::string m_name;
};
