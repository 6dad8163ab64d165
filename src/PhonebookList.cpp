#include "PhonebookList.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>

#include <framework/services/DigitAnalysisServiceIfc.h>
#include <framework/services/DirectoryServiceIfc.h>
#include <framework/services/PhonebookSearchResults.h>
#include <framework/services/Utils.h>
#include <framework/util/CriticalSection.h>
#include <framework/util/Utf8Utils.h>

#include "PB_Error.h"
#include "PhonebookLog.h"
#include "PhonebookProtocolAdaptor.h"
#include "Toolbox.h"

namespace {

constexpr char nSOURCE[] = "./src/PhonebookList";

constexpr int nALL_GROUPS = -1;
constexpr int nNEW_ROW = -1;
constexpr int nNOT_SHOWN = -1;
constexpr unsigned int nSPARE_ROWS = 10;
constexpr unsigned int nDISPLAY_MODES = 4;
constexpr unsigned int nDISPLAY_QUALIFIERS = 10;
constexpr char nTRUE[] = "true";
constexpr char nNOT_CONFIGURED[] = "???";
constexpr long long nMS_PER_SECOND = 1000;

bool hasResults(DirectoryStatus status)
{
    return status == DIRECTORY_SUCCESS || status == DIRECTORY_TOO_MANY_MATCHES;
}

bool isNumber(const std::string& attribute)
{
    return attribute == Utils::OFFICE || attribute == Utils::OFFICE2 || attribute == Utils::MOBILE ||
           attribute == Utils::PRIVATE;
}

// Rows shown as surname and initial stand in the order of the whole first name.
displayMode sortMode(displayMode mode)
{
    return mode == displayMode::SurnameInitial ? displayMode::SurnameFirstname : mode;
}

void setRow(PhonebookListEntry& row, const PhonebookFullEntry& entry, const std::string& uniqueId)
{
    row.setSurname(entry.getSurname());
    row.setFirstname(entry.getFirstname());
    row.setDefaultNumber(entry.getDefaultNumber());
    row.setUniqueId(uniqueId);
}

} // namespace

PhonebookList::PhonebookList(DirectoryServiceIfc* directory)
    : PhonebookList(directory, nullptr, "DisplayOptions", "")
{
}

PhonebookList::PhonebookList(DirectoryServiceIfc* directory, DigitAnalysisServiceIfc* digitAnalysis)
    : PhonebookList(directory, digitAnalysis, "LdapDisplayOptions", "LdapQualifier")
{
}

PhonebookList::PhonebookList(DirectoryServiceIfc* directory, DigitAnalysisServiceIfc* digitAnalysis,
                             std::string displayOptionTag, std::string qualifierTag)
    : m_pDirectory(directory)
    , m_pDigitAnalysis(digitAnalysis)
    , m_displayOptionTag(std::move(displayOptionTag))
    , m_qualifierTag(std::move(qualifierTag))
{
    PB_TRACE("PhonebookList::PhonebookList()");
    getDisplayOptionFromDatabase();
    getDisplayQualifierFromDatabase();
}

PhonebookList::~PhonebookList()
{
    PB_TRACE("PhonebookList::~PhonebookList()");
}

unsigned int PhonebookList::size()
{
    PB_TRACE("PhonebookList::size()");
    const CriticalSection lock(m_lock);
    return static_cast<unsigned int>(m_entries.size());
}

int PhonebookList::addEntry(PhonebookFullEntry* entry, int& newIndex)
{
    PB_TRACE("PhonebookList::addEntry()");
    return updateEntry(entry, newIndex, nNEW_ROW);
}

int PhonebookList::updateEntry(PhonebookFullEntry* entry, int& newIndex, int rowIndex)
{
    PB_TRACE("PhonebookList::updateEntry()");
    const CriticalSection lock(m_lock);
    newIndex = nNOT_SHOWN;
    if (const int refusal = entry->validateEntry(); refusal != PB_Error::SUCCESS)
        return refusal;

    std::string writtenId = entry->getUniqueId();
    const int result = PhonebookProtocolAdaptor::addFullEntry(
        m_pDirectory, &entry->getSurname(), &entry->getFirstname(), &entry->getOffice(), &entry->getMobile(),
        &entry->getPrivate(), &entry->getEmail(), &entry->getGroup(), &entry->getDefaultNumber(),
        &entry->getCompany(), &entry->getOffice2(), &entry->getAddress(), &entry->getAddress2(),
        &entry->getJobFunction(), &entry->getPicture(), &entry->getExternalId(), writtenId);
    if (result != PB_Error::SUCCESS)
        return result;

    const bool isKnown = !entry->getUniqueId().empty();
    if (getGroupIndication() != nALL_GROUPS && entry->getGroupIndex() != getGroupIndication()) {
        if (isKnown && rowIndex >= 0)
            removeRow(static_cast<unsigned int>(rowIndex));
        return PB_Error::SUCCESS;
    }

    if (isKnown)
        setRow(m_entries.at(static_cast<std::size_t>(rowIndex)), *entry, entry->getUniqueId());
    else
        appendRow(*entry, writtenId);
    sortListBySortMode();
    return findRow(writtenId, newIndex);
}

void PhonebookList::removeRow(unsigned int index)
{
    PB_TRACE("PhonebookList::removeRow()");
    static_cast<void>(m_entries.at(index)); // throws for a row that does not exist; erase() would not
    m_entries.erase(m_entries.begin() + index);
}

void PhonebookList::appendRow(const PhonebookFullEntry& entry, const std::string& uniqueId)
{
    PB_TRACE("PhonebookList::appendRow()");
    PhonebookListEntry row;
    setRow(row, entry, uniqueId);
    // Room is made only while there is some left; a full vector grows by its own rule.
    if (m_entries.size() + 1 < m_entries.capacity())
        bumpPhonebookCapacity(static_cast<unsigned int>(m_entries.size()));
    m_entries.push_back(std::move(row));
}

int PhonebookList::findRow(const std::string& uniqueId, int& index) const
{
    PB_TRACE("PhonebookList::findRow()");
    const auto row = std::find_if(m_entries.begin(), m_entries.end(), [&uniqueId](const auto& candidate) {
        return candidate.m_uniqueId == uniqueId;
    });
    if (row == m_entries.end()) {
        PB_ERROR("updateEntry - modified or new entry not found after sorting");
        return PB_Error::NO_INDEX;
    }
    index = static_cast<int>(row - m_entries.begin());
    return PB_Error::SUCCESS;
}

int PhonebookList::populate(int groupID)
{
    const CriticalSection lock(m_lock);
    m_groupIndication = groupID;
    PB_TRACE("populate - groupID = %d", groupID);
    m_entries.clear();

    std::vector<std::string> items;
    if (PhonebookProtocolAdaptor::getListData(m_pDirectory, groupID, items) != 1)
        return 0;
    bumpPhonebookCapacity(static_cast<unsigned int>(items.size()));
    for (const auto& item : items)
        m_entries.emplace_back(item);
    sortListBySortMode();
    return 1;
}

int PhonebookList::populate(PhonebookSearchCriteria& criteria, bool ignoreNickname)
{
    const CriticalSection lock(m_lock);
    PB_TRACE("populate - source enum value = %d", static_cast<int>(criteria.getSource()));
    if (!m_pDirectory)
        return DIRECTORY_CONNECTION_FAILURE;
    PhonebookSearchResults results;
    const DirectoryStatus status = m_pDirectory->search(criteria, results, ignoreNickname);
    if (!hasResults(status))
        return status;

    m_entries.clear();
    m_ldapResults = std::move(results.getRecords());
    // The last record is a trailer and no contact.
    const auto contacts = m_ldapResults.size() - 1;
    m_nickNameResultIndicator = m_ldapResults.at(contacts).at(0).second == nTRUE;
    bumpPhonebookCapacity(static_cast<unsigned int>(contacts));
    for (std::size_t i = 0; i < contacts; ++i) {
        auto& row = m_entries.emplace_back(&m_ldapResults[i]);
        if (m_ldapList)
            row.setLDAPPhonebookListEntry(true);
    }
    sortListBySortMode();
    return status;
}

void PhonebookList::depopulate()
{
    PB_TRACE("depopulate");
    const CriticalSection lock(m_lock);
    m_entries.clear();
    m_ldapResults.clear();
}

PhonebookListEntry PhonebookList::elementAt(unsigned int index)
{
    PB_TRACE("PhonebookList::elementAt()");
    const CriticalSection lock(m_lock);
    return m_entries.at(index);
}

int PhonebookList::getFullEntry(unsigned int index, PhonebookFullEntry& entry)
{
    PB_TRACE("PhonebookList::getFullEntry()");
    const CriticalSection lock(m_lock);
    const PhonebookListEntry row = elementAt(index);
    if (row.getUniqueId().empty()) {
        if (!row.getFullRecordPointer())
            return 0;
        entry.setAll(row.getFullRecordPointer());
        return 1;
    }
    std::vector<std::string> fields;
    if (PhonebookProtocolAdaptor::getFullEntryData(m_pDirectory, &row.getUniqueId(), fields) != 1)
        return 0;
    entry.setAll(fields);
    entry.setUniqueId(row.getUniqueId());
    return 1;
}

int PhonebookList::deleteEntry(unsigned int index)
{
    PB_TRACE("PhonebookList::deleteEntry()");
    const CriticalSection lock(m_lock);
    const std::string uniqueId = elementAt(index).getUniqueId();
    if (PhonebookProtocolAdaptor::deleteEntry(m_pDirectory, &uniqueId) != 1)
        return PB_Error::DB_DELETE;
    removeRow(index);
    return PB_Error::SUCCESS;
}

int PhonebookList::deleteAll()
{
    PB_TRACE("PhonebookList::deleteAll()");
    const CriticalSection lock(m_lock);
    if (PhonebookProtocolAdaptor::deleteAll(m_pDirectory, m_groupIndication) != 1)
        return PB_Error::DB_DELETE_ALL;
    m_entries.clear();
    return PB_Error::SUCCESS;
}

std::string PhonebookList::normalizedNameAt(int index) const
{
    PB_TRACE("PhonebookList::normalizedNameAt()");
    std::string name =
        m_entries[static_cast<std::size_t>(index)].getDisplayName(m_displayMode, m_displayQualifier);
    Utf8Utils::normalize(name);
    return name;
}

int PhonebookList::getIndex(const std::string& quickSearchString, int& index)
{
    PB_TRACE("getIndex entered");
    PB_TRACE("getIndex QuickSearchString = %s ", quickSearchString.c_str());
    const Utf8Utils::SteadyOrder steady;
    std::string wanted = quickSearchString;
    Utf8Utils::normalize(wanted);

    const CriticalSection lock(m_lock);
    index = 0;
    if (m_entries.empty())
        return 0;
    int found = 0;
    int candidate = 0;
    int low = 0;
    int high = static_cast<int>(m_entries.size()) - 1;
    do {
        const int mid = (low + high) / 2;
        index = mid;
        const std::string name = normalizedNameAt(mid);
        PB_TRACE("getIndex - normalized gotName = %s ", name.c_str());
        const int position = Utf8Utils::find(name, wanted);
        PB_TRACE("getIndex - foundPos = %i ", position);
        if (position == 0) {
            if (mid == 0 || Utf8Utils::compare(normalizedNameAt(mid - 1), wanted))
                found = 1;
            else
                high = mid - 1;
        } else if (Utf8Utils::compare(wanted, name)) {
            high = mid - 1;
        } else {
            candidate = mid;
            low = mid + 1;
        }
    } while (!found && high >= low && static_cast<std::size_t>(high) < m_entries.size());
    if (!found)
        index = candidate;
    PB_TRACE("getIndex IndexFound = %i ", index);
    return found;
}

displayMode PhonebookList::getDisplayMode()
{
    PB_TRACE("PhonebookList::getDisplayMode()");
    const CriticalSection lock(m_lock);
    return m_displayMode;
}

displayQualifier PhonebookList::getDisplayQualifier()
{
    PB_TRACE("PhonebookList::getDisplayQualifier()");
    const CriticalSection lock(m_lock);
    return m_displayQualifier;
}

void PhonebookList::setDisplayMode(displayMode mode)
{
    PB_TRACE("PhonebookList::setDisplayMode()");
    const CriticalSection lock(m_lock);
    const displayMode before = m_displayMode;
    m_displayMode = mode;
    savePhonebookOptionsInDatabase(m_displayOptionTag, static_cast<int>(mode));
    if (sortMode(before) != sortMode(mode))
        sortListBySortMode();
}

void PhonebookList::setDisplayQualifier(displayQualifier qualifier)
{
    PB_TRACE("PhonebookList::setDisplayQualifier()");
    const CriticalSection lock(m_lock);
    const int value = static_cast<int>(qualifier);
    if (savePhonebookOptionsInDatabase(m_qualifierTag, value) != 0)
        PB_ERROR("write failed tag = %s, New value = %d", m_qualifierTag.c_str(), value);
    m_displayQualifier = qualifier;
}

int PhonebookList::getGroupIndication()
{
    PB_TRACE("PhonebookList::getGroupIndication()");
    const CriticalSection lock(m_lock);
    return m_groupIndication;
}

void PhonebookList::convertToCanonical()
{
    PB_TRACE("PhonebookList::convertToCanonical()");
    const CriticalSection lock(m_lock);
    if (!m_pDigitAnalysis)
        return;
    for (const auto& row : m_entries) {
        if (!row.getFullRecordPointer())
            continue;
        for (auto& [name, value] : *row.getFullRecordPointer())
            if (isNumber(name) && !value.empty())
                m_pDigitAnalysis->convertToCanonical(value);
    }
}

bool PhonebookList::getNickNameResultIndicator()
{
    PB_TRACE("PhonebookList::getNickNameResultIndicator()");
    const CriticalSection lock(m_lock);
    return m_nickNameResultIndicator;
}

bool PhonebookList::isNicknameAttributeActive()
{
    PB_TRACE("PhonebookList::isNicknameAttributeActive()");
    return m_pDirectory && m_pDirectory->isNicknameAttributeActive();
}

void PhonebookList::setLDAPPhonebookList(bool ldap)
{
    PB_TRACE("PhonebookList::setLDAPPhonebookList()");
    const CriticalSection lock(m_lock);
    m_ldapList = ldap;
}

void PhonebookList::bumpPhonebookCapacity(unsigned int n)
{
    PB_TRACE("PhonebookList::bumpPhonebookCapacity()");
    const CriticalSection lock(m_lock);
    m_entries.reserve(static_cast<std::size_t>(n) + nSPARE_ROWS);
}

void PhonebookList::sortListBySortMode()
{
    PB_TRACE("PhonebookList::sortListBySortMode()");
    const CriticalSection lock(m_lock);
    const displayMode mode = sortMode(m_displayMode);
    std::for_each(m_entries.rbegin(), m_entries.rend(), [this, mode](PhonebookListEntry& row) {
        row.m_sortKey = row.getDisplayName(mode, m_displayQualifier);
    });
    sortRowsByKey();
    // clear() would keep the keys' memory.
    std::for_each(m_entries.rbegin(), m_entries.rend(),
                  [](PhonebookListEntry& row) { std::string().swap(row.m_sortKey); });
}

void PhonebookList::sortRowsByKey()
{
    PB_TRACE("PhonebookList::sortRowsByKey()");
    // A row is large: while keys are compared, only views of them move about, and each row moves
    // once. The keys lie side by side, as a comparison mostly waits for memory.
    struct KeyOfRow {
        std::string_view key;
        std::size_t row;
    };
    std::size_t length = 0;
    for (const auto& row : m_entries)
        length += row.m_sortKey.size();
    std::string keys;
    keys.reserve(length);
    std::vector<KeyOfRow> order;
    order.reserve(m_entries.size());
    for (const auto& row : m_entries) {
        order.push_back({{keys.data() + keys.size(), row.m_sortKey.size()}, order.size()});
        keys += row.m_sortKey;
    }

    const auto sortPredicate = [](const KeyOfRow& left, const KeyOfRow& right) {
        return Utf8Utils::compare(left.key, right.key);
    };
    const Utf8Utils::SteadyOrder steady;
    std::sort(order.begin(), order.end(), sortPredicate);

    std::vector<PhonebookListEntry> sorted;
    sorted.reserve(m_entries.capacity());
    for (const auto& next : order)
        sorted.push_back(std::move(m_entries[next.row]));
    m_entries.swap(sorted);
}

displayMode PhonebookList::getDisplayOptionFromDatabase()
{
    PB_TRACE("getDisplayOptionFromDatabase Function Entered");
    const CriticalSection lock(m_lock);
    int stored = m_pDirectory ? m_pDirectory->readOption(m_displayOptionTag) : 0;
    if (static_cast<unsigned int>(stored) >= nDISPLAY_MODES) {
        PB_ERROR(" Invalid Display Option from database =  %d ", stored);
        stored = 0;
    }
    m_displayMode = static_cast<displayMode>(stored);
    return m_displayMode;
}

displayQualifier PhonebookList::getDisplayQualifierFromDatabase()
{
    PB_TRACE("PhonebookList::getDisplayQualifierFromDatabase()");
    const CriticalSection lock(m_lock);
    int stored = m_pDirectory && !m_qualifierTag.empty() ? m_pDirectory->readOption(m_qualifierTag) : 0;
    if (static_cast<unsigned int>(stored) >= nDISPLAY_QUALIFIERS) {
        PB_ERROR(" Invalid Qualifier from database =  %d ", stored);
        stored = 0;
    }
    m_displayQualifier = static_cast<displayQualifier>(stored);
    return m_displayQualifier;
}

int PhonebookList::savePhonebookOptionsInDatabase(const std::string& tag, int value)
{
    PB_TRACE("saveDisplayOptionsInDatabase Function Entered");
    const CriticalSection lock(m_lock);
    return m_pDirectory ? m_pDirectory->writeOption(tag, value) : 0;
}

int PhonebookList::getSearchTriggerTimeoutFromDatabase(LocalMgmtIfc* localMgmt)
{
    PB_TRACE("getSearchTriggerTimeoutFromDatabase Function Entered");
    const std::string seconds = Toolbox::getValueFromOCMS(localMgmt, "ldap-search-trigger-timeout");
    if (seconds == nNOT_CONFIGURED)
        return 0;
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(
        std::clamp<long long>(Toolbox::stoi(seconds) * nMS_PER_SECOND, Limits::min(), Limits::max()));
}
