// One configuration item that is read, or that has changed.

#pragma once

#include <map>
#include <memory>
#include <string>

#include <framework/Export.h>

// The value of an item.
class FRAMEWORK_API ManageableDataNode {
public:
    explicit ManageableDataNode(std::string value);
    ~ManageableDataNode();

    const std::string& getValue() const { return m_value; }

private:
    std::string m_value;
};

class FRAMEWORK_API ManageableData {
public:
    ManageableData();
    ~ManageableData();

    ManageableData(const ManageableData&) = delete;
    ManageableData& operator=(const ManageableData&) = delete;

    // Which item: its name, such as "language".
    void setRootId(const std::string& id) { m_rootId = id; }
    const std::string& getRootId() const { return m_rootId; }

    // The value of item `id`, or null when it was not read. It belongs to this object.
    const ManageableDataNode* interogate(const std::string& id) const;

    // For the telephone.
    void setValue(const std::string& id, std::string value);

private:
    std::string m_rootId;
    std::map<std::string, std::unique_ptr<ManageableDataNode>> m_nodes;
};
