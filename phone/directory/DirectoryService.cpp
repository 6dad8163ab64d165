#include "DirectoryService.h"

#include <algorithm>

#include <framework/services/DirectoryServiceObserverIfc.h>
#include <framework/services/PhonebookGroupList.h>
#include <framework/util/Serializer.h>

#include "ChangeWatch.h"
#include "ContactText.h"
#include "RequestXml.h"
#include "app/PhoneLog.h"

namespace {

constexpr char nSOURCE[] = "./phone/directory/DirectoryService";

// Whoever asks tells a full store by this very text.
constexpr char nOUT_OF_SPACE[] = "Not enough memory";

std::string failure(const char* what, const Error& error)
{
    PHONE_ERROR("%s failed: %s", what, error.sentence.c_str());
    return failureAnswer(error.code == ErrorCode::Full ? nOUT_OF_SPACE : error.sentence);
}

bool succeeded(const char* what, const Result<void>& outcome)
{
    if (!outcome)
        PHONE_ERROR("%s failed: %s", what, outcome.error().sentence.c_str());
    return outcome.ok();
}

} // namespace

std::filesystem::path DirectoryService::fileIn(const std::filesystem::path& profile)
{
    return profile / "contacts.db";
}

Result<std::unique_ptr<DirectoryService>>
DirectoryService::open(const std::filesystem::path& profile, DirectoryOptions options, EventPoster& events)
{
    return open(profile, std::move(options), events, events);
}

Result<std::unique_ptr<DirectoryService>> DirectoryService::open(const std::filesystem::path& profile,
                                                                 DirectoryOptions options,
                                                                 EventPoster& events, EventPoster& notices)
{
    try {
        return std::unique_ptr<DirectoryService>(
            new DirectoryService(fileIn(profile), std::move(options), events, notices));
    } catch (const SqliteError& error) {
        return error.toError();
    }
}

DirectoryService::DirectoryService(const std::filesystem::path& file, DirectoryOptions options,
                                   EventPoster& events, EventPoster& notices)
    : m_file(file)
    , m_options(std::move(options))
    , m_notices(notices)
    , m_pStore(std::make_unique<ContactStore>(file, m_options.language))
{
    if (!notice().empty())
        PHONE_ERROR("%s", notice().c_str());
    if (m_options.watchInterval.count() == 0)
        return;
    m_pWatch = std::make_unique<ChangeWatch>(file, m_options.watchInterval,
                                             [this, &events, alive = std::weak_ptr(m_alive)] {
                                                 events.post("contacts: look for changes", [this, alive] {
                                                     if (!alive.expired())
                                                         lookForChanges();
                                                 });
                                             });
}

DirectoryService::~DirectoryService() = default;

void DirectoryService::setLanguage(const std::string& language)
{
    succeeded("sorting by another language", m_pStore->setLanguage(language));
}

std::string DirectoryService::request(const std::string& xml)
{
    followReplacedFile();
    const auto parsed = parseDirectoryRequest(xml);
    if (!parsed)
        return failure("a request", parsed.error());
    const auto& request = parsed.value();
    switch (request.kind) {
    case DirectoryRequest::Kind::Read:
        return read(request.contact.id);
    case DirectoryRequest::Kind::Write:
        return write(request.contact);
    case DirectoryRequest::Kind::Delete:
        return erase(request.contact.id, request.group);
    }
    return failureAnswer("");
}

std::string DirectoryService::read(const std::string& id)
{
    const auto found = m_pStore->read(id);
    if (!found)
        return failure("reading a contact", found.error());
    if (!found.value())
        return failure("reading a contact", {ErrorCode::NotFound, "There is no such contact any more."});
    m_lastRead = found.value();
    return readAnswer(*m_lastRead);
}

std::string DirectoryService::write(const Contact& contact)
{
    const bool wasRead = m_lastRead && m_lastRead->id == contact.id;
    const auto id = m_pStore->write(contact, wasRead ? m_lastRead : std::nullopt);
    if (id)
        m_lastRead.reset();
    return id ? writeAnswer(id.value()) : failure("writing a contact", id.error());
}

std::string DirectoryService::erase(const std::string& id, std::optional<int> group)
{
    const auto done = id.empty() ? m_pStore->eraseAll(group) : m_pStore->erase(id);
    return done ? deleteAnswer() : failure("deleting contacts", done.error());
}

bool DirectoryService::isEmpty()
{
    const auto empty = m_pStore->isEmpty();
    return empty && empty.value();
}

std::vector<std::string> DirectoryService::namesWithNumber(const std::string& number,
                                                           const Canonical& canonical) const
{
    auto names = ::namesWithNumber(m_file, number, canonical);
    return names ? std::move(names).value() : std::vector<std::string>();
}

std::string DirectoryService::getList()
{
    return listText(std::nullopt);
}

std::string DirectoryService::getList(const std::string& groupTag)
{
    return listText(PhonebookGroup::groupTagToIndex(groupTag));
}

std::string DirectoryService::listText(std::optional<int> group)
{
    followReplacedFile();
    auto list = m_pStore->listText(group);
    if (!list) {
        PHONE_ERROR("listing the contacts failed: %s", list.error().sentence.c_str());
        return "";
    }
    return std::move(list).value();
}

DirectoryStatus DirectoryService::search(PhonebookSearchCriteria& criteria, PhonebookSearchResults& results,
                                         bool ignoreNickname)
{
    return m_corporate.search(criteria, results, ignoreNickname);
}

bool DirectoryService::isNicknameAttributeActive()
{
    return m_corporate.usesNickname();
}

int DirectoryService::readOption(const std::string& tag)
{
    followReplacedFile();
    const auto value = m_pStore->readOption(tag);
    if (!value)
        PHONE_ERROR("reading the option %s failed: %s", tag.c_str(), value.error().sentence.c_str());
    return value ? value.value() : 0;
}

int DirectoryService::writeOption(const std::string& tag, int value)
{
    followReplacedFile();
    return succeeded("writing an option", m_pStore->writeOption(tag, value)) ? 0 : 1;
}

PhonebookGroupList* DirectoryService::getGroupList()
{
    followReplacedFile();
    const auto names = m_pStore->groupNames(m_options.groupSlots);
    if (!names) {
        PHONE_ERROR("reading the groups failed: %s", names.error().sentence.c_str());
        return nullptr;
    }
    auto groups = std::make_unique<PhonebookGroupList>(static_cast<int>(names.value().size()));
    for (std::size_t index = 0; index < names.value().size(); ++index)
        groups->updateGroup(PhonebookGroup(static_cast<int>(index) + 1, names.value()[index]));
    groups->setStoredNames(names.value());
    return groups.release();
}

bool DirectoryService::storeGroupList(PhonebookGroupList* groups)
{
    if (!groups)
        return false;
    followReplacedFile();
    std::vector<std::string> names;
    for (int index = 1; index <= groups->numberOfGroups(); ++index) {
        PhonebookGroup group;
        groups->getGroup(index, group);
        names.push_back(fitText(group.getName(), contact_limits::nGROUP_NAME));
    }
    if (!succeeded("writing the groups", m_pStore->writeGroupNames(names, groups->storedNames())))
        return false;
    groups->setStoredNames(std::move(names));
    return true;
}

bool DirectoryService::reassignGroup(unsigned group, unsigned to, int /*mode*/)
{
    followReplacedFile();
    return succeeded("moving the contacts of a group",
                     m_pStore->reassignGroup(static_cast<int>(group), static_cast<int>(to)));
}

std::string DirectoryService::getFieldSizes()
{
    using namespace contact_limits;
    const auto size = [](const char* name, std::size_t characters) {
        return std::pair<std::string, std::string>(name, std::to_string(characters));
    };
    return Serializer::serialize({
        size("lastname", nNAME),
        size("firstname", nNAME),
        size("business1", nNUMBER),
        size("business2", nNUMBER),
        size("mobile", nNUMBER),
        size("private", nNUMBER),
        size("company", nCOMPANY),
        size("address1", nADDRESS),
        size("address2", nADDRESS),
        size("position", nJOB_FUNCTION),
        size("email", nEMAIL),
        size("callgroup", nGROUP_NAME),
    });
}

void DirectoryService::addObserver(DirectoryServiceObserverIfc* observer)
{
    if (observer && std::find(m_observers.begin(), m_observers.end(), observer) == m_observers.end())
        m_observers.push_back(observer);
}

void DirectoryService::removeObserver(DirectoryServiceObserverIfc* observer)
{
    std::erase(m_observers, observer);
}

void DirectoryService::followReplacedFile()
{
    const auto file = m_pStore->fileState();
    const bool badFileIsGone =
        file == ContactStore::FileState::Missing && state() == ContactStore::State::Unusable;
    const bool mayBeUsableAgain = state() == ContactStore::State::Unusable && m_pStore->mayHavePassed();
    if (file == ContactStore::FileState::Replaced || badFileIsGone || mayBeUsableAgain)
        m_pStore->reopen();
    if (!m_pStore->takeReplaced())
        return;
    PHONE_USER("the contacts were replaced: %s", notice().empty() ? "read again" : notice().c_str());
    postNotice(true);
}

void DirectoryService::lookForChanges()
{
    followReplacedFile();
    if (m_pStore->changedByOthers())
        postNotice(m_pStore->takeReplaced());
}

void DirectoryService::postNotice(bool restart)
{
    m_noticeIsRestart = m_noticeIsRestart || restart;
    if (std::exchange(m_noticePosted, true))
        return;
    m_notices.post("contacts changed by others", [this, alive = std::weak_ptr(m_alive)] {
        if (!alive.expired())
            deliverNotice();
    });
}

void DirectoryService::deliverNotice()
{
    m_noticePosted = false;
    // The options are read again for changed contacts, not for a restart: other contacts are both.
    tellObservers(false);
    if (std::exchange(m_noticeIsRestart, false))
        tellObservers(true);
}

void DirectoryService::tellObservers(bool restart)
{
    // An observer may leave while it is told.
    for (auto* observer : std::vector(m_observers)) {
        if (std::find(m_observers.begin(), m_observers.end(), observer) != m_observers.end())
            observer->phonebookDatabaseUpdated(restart);
    }
}
