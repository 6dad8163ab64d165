// What the services hand to and fro.

#include <framework/services/CallPartyIdentifier.h>
#include <framework/services/InterDigitTimeOutEvent.h>
#include <framework/services/JournalServiceObserverIfc.h>
#include <framework/services/ManageableData.h>
#include <framework/services/PhonebookSearchCriteria.h>
#include <framework/services/PhonebookSearchResults.h>
#include <framework/services/Utils.h>

namespace Utils {

const std::string SURNAME = "surname";
const std::string FIRSTNAME = "firstname";
const std::string NICKNAME = "nickname";
const std::string OFFICE = "office";
const std::string OFFICE2 = "office2";
const std::string MOBILE = "mobile";
const std::string PRIVATE = "private";
const std::string EMAIL = "email";
const std::string COMPANY = "company";
const std::string JOBFUNCTION = "jobfunction";
const std::string ADDRESS1 = "address1";
const std::string ADDRESS2 = "address2";

} // namespace Utils

PhonebookSearchCriteria::PhonebookSearchCriteria(AttributeList attributes, const std::string& base, bool ldap)
    : m_attributes(std::move(attributes))
    , m_base(base)
    , m_source(ldap ? Source::Ldap : Source::Local)
{
}

PhonebookSearchCriteria::~PhonebookSearchCriteria() = default;

PhonebookSearchResults::PhonebookSearchResults() = default;
PhonebookSearchResults::~PhonebookSearchResults() = default;

CallPartyIdentifier::CallPartyIdentifier() = default;
CallPartyIdentifier::~CallPartyIdentifier() = default;

InterDigitTimeOutEvent::InterDigitTimeOutEvent(std::string dialString)
    : m_dialString(std::move(dialString))
{
}

InterDigitTimeOutEvent::~InterDigitTimeOutEvent() = default;

JournalItem::JournalItem(std::vector<JournalRecord> records)
    : m_records(std::move(records))
{
}

JournalItem::~JournalItem() = default;

ManageableDataNode::ManageableDataNode(std::string value)
    : m_value(std::move(value))
{
}

ManageableDataNode::~ManageableDataNode() = default;

ManageableData::ManageableData() = default;
ManageableData::~ManageableData() = default;

const ManageableDataNode* ManageableData::interogate(const std::string& id) const
{
    const auto node = m_nodes.find(id);
    return node == m_nodes.end() ? nullptr : node->second.get();
}

void ManageableData::setValue(const std::string& id, std::string value)
{
    m_nodes[id] = std::make_unique<ManageableDataNode>(std::move(value));
}
