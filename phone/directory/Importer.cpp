#include "Importer.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "ContactText.h"
#include "pictures/ClipFolder.h"
#include "pictures/Thumbnail.h"

namespace {

const Error nCANCELLED{ErrorCode::Failed, "Cancelled. Nothing was imported."};

std::string digitsOf(const std::string& number)
{
    std::string digits;
    std::copy_if(number.begin(), number.end(), std::back_inserter(digits),
                 [](char character) { return character >= '0' && character <= '9'; });
    return digits;
}

bool shareANumber(const Contact& one, const Contact& other)
{
    for (const auto& mine : nNUMBER_FIELDS) {
        const auto digits = digitsOf(one.*mine.text);
        for (const auto& his : nNUMBER_FIELDS) {
            if (!digits.empty() && digits == digitsOf(other.*his.text))
                return true;
        }
    }
    return false;
}

bool sameTexts(const Contact& one, const Contact& other)
{
    return std::all_of(nCARD_FIELDS.begin(), nCARD_FIELDS.end(),
                       [&](const auto& field) { return one.*field.text == other.*field.text; });
}

DefaultNumber firstNumber(const Contact& contact)
{
    for (const auto& field : nNUMBER_FIELDS) {
        if (!(contact.*field.text).empty())
            return field.number;
    }
    return DefaultNumber::None;
}

bool hasNumber(const Contact& contact, DefaultNumber number)
{
    return std::any_of(nNUMBER_FIELDS.begin(), nNUMBER_FIELDS.end(), [&](const auto& field) {
        return field.number == number && !(contact.*field.text).empty();
    });
}

std::string differences(const Contact& before, const Contact& after)
{
    std::string names;
    const auto add = [&](const std::string& name) { names += (names.empty() ? "" : ", ") + name; };
    for (const auto& field : nCARD_FIELDS) {
        if (before.*field.text != after.*field.text)
            add(field.name);
    }
    if (before.group != after.group)
        add("group");
    if (before.picture != after.picture)
        add("picture");
    if (before.defaultNumber != after.defaultNumber)
        add("number to dial");
    return names.empty() ? "only what the telephone does not show" : names;
}

// A group that there was no room for was not taken off the contact: an export must leave it on the card.
std::string whatBecameOf(const PlannedCard& card, const std::string& planned)
{
    if (card.contact.group != 0 || card.groups.empty())
        return planned;
    auto imported = ImportedCard::fromText(planned);
    imported.group.clear();
    return imported.toText();
}

std::string hexadecimal(std::int64_t number)
{
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(number));
    return text;
}

} // namespace

std::string listedName(const Contact& contact)
{
    const bool both = !contact.surname.empty() && !contact.firstname.empty();
    return contact.surname + (both ? ", " : "") + contact.firstname;
}

// What is too large for memory: the cards and their pictures.
struct Importer::Stage {
    Stage()
        : database(Database::temporary())
    {
        database->execute("PRAGMA journal_mode = OFF");
        database->execute(
            "CREATE TABLE cards(number INTEGER PRIMARY KEY, hash INTEGER, card TEXT, imported TEXT, "
            "picture BLOB); CREATE INDEX by_hash ON cards(hash)");
        add = std::make_unique<Statement>(database->handle(), "INSERT INTO cards VALUES(?1, ?2, ?3, ?4, ?5)");
        find = std::make_unique<Statement>(database->handle(),
                                           "SELECT 1 FROM cards WHERE hash = ?1 AND card = ?2");
        get = std::make_unique<Statement>(database->handle(),
                                          "SELECT card, imported, picture FROM cards WHERE number = ?1");
    }

    std::unique_ptr<Database> database;
    std::unique_ptr<Statement> add;
    std::unique_ptr<Statement> find;
    std::unique_ptr<Statement> get;
};

Importer::Importer(ContactStore& store, std::filesystem::path pictures, int groupSlots, OwnGroup ownGroup)
    : m_store(store)
    , m_pictures(std::move(pictures))
    , m_ownGroup(std::move(ownGroup))
    , m_groupNames(static_cast<std::size_t>(groupSlots))
{
}

Importer::~Importer() = default;

Result<void> Importer::read(const std::filesystem::path& file, const Progress& progress)
{
    std::error_code failed;
    const auto size = std::filesystem::file_size(file, failed);
    if (failed)
        return Error{ErrorCode::NotFound,
                     "\"" + file.string() + "\" cannot be read: " + failed.message() + "."};
    auto reader = CardReader::open(file);
    if (!reader)
        return reader.error();
    try {
        m_pStage = std::make_unique<Stage>();
        for (;;) {
            const auto record = reader.value()->next();
            if (!record)
                return record.error();
            if (!record.value())
                return compare();
            take(*record.value());
            if (!progress(record.value()->end, size))
                return nCANCELLED;
        }
    } catch (const SqliteError& error) {
        return error.toError();
    }
}

void Importer::take(const CardRecord& record)
{
    PlannedCard card;
    card.line = record.line;
    card.problems = record.problems;
    card.notShown = record.notShown;
    ImportedCard imported;
    if (record.invalid.empty()) {
        card.hash = ContactStore::cardHash(record.card);
        card.uid = record.uid;
        card.contact = fit(record, card, imported);
    }
    if (!record.invalid.empty()) {
        card.fate = CardFate::Invalid;
        card.reason = record.invalid;
    } else if (card.contact.surname.empty() && card.contact.firstname.empty()) {
        card.fate = CardFate::Invalid;
        card.reason = "the card has no name that can be shown";
    } else if (isRepeated(record, card.hash)) {
        card.fate = CardFate::Same;
        card.reason = "it is in the file already";
    }
    m_cards.push_back(std::move(card));
    if (m_cards.back().fate == CardFate::New)
        keep(record, imported);
}

bool Importer::isRepeated(const CardRecord& record, std::int64_t hash)
{
    StatementUse row(*m_pStage->find);
    row->bind(1, hash).bind(2, record.card);
    return row->step();
}

void Importer::keep(const CardRecord& record, const ImportedCard& imported)
{
    const auto& card = m_cards.back();
    const auto text = imported.toText();
    StatementUse row(*m_pStage->add);
    row->bind(1, static_cast<std::int64_t>(m_cards.size() - 1)).bind(2, card.hash).bind(3, record.card);
    row->bind(4, text);
    if (!card.contact.picture.empty())
        row->bindBlob(5, record.photo);
    row->step();
}

// The card's texts as the telephone can keep them.
Contact Importer::fit(const CardRecord& record, PlannedCard& card, ImportedCard& imported)
{
    Contact contact;
    for (const auto& field : nCARD_FIELDS) {
        const std::string whole(trimmedText(cleanText(record.contact.*field.text)));
        contact.*field.text = trimmedText(cutText(whole, field.limit));
        if (contact.*field.text == whole)
            continue;
        imported.whole.emplace_back(field.name, whole);
        card.problems.push_back(std::string(field.name) + " is cut to " + std::to_string(field.limit) +
                                " characters");
    }
    card.prefersNumber = hasNumber(contact, record.contact.defaultNumber);
    contact.defaultNumber = card.prefersNumber ? record.contact.defaultNumber : firstNumber(contact);
    contact.picture = pictureName(record, contact, card);

    for (const auto& name : record.groups) {
        const std::string group(
            trimmedText(cutText(trimmedText(cleanText(name)), contact_limits::nGROUP_NAME)));
        if (!group.empty() && std::find(card.groups.begin(), card.groups.end(), group) == card.groups.end())
            card.groups.push_back(group);
    }
    for (std::size_t further = 1; further < card.groups.size(); ++further)
        card.notShown.push_back("group " + card.groups[further] + " (a contact has one group)");
    imported.groups = card.groups;
    imported.group = card.groups.empty() ? "" : card.groups.front();
    imported.contact = contact;
    return contact;
}

// Named after the contact, so that people recognise it among the others.
std::string Importer::pictureName(const CardRecord& record, const Contact& contact, PlannedCard& card)
{
    if (record.photo.empty())
        return "";
    // Only what can be shown is kept; the card keeps the rest for an export.
    if (const auto seen = thumbnailOf(record.photo); !seen) {
        card.problems.push_back("the picture is left out. " + seen.error().sentence);
        return "";
    }
    const auto hash = ContactStore::cardHash(record.photo);
    const auto [known, isNew] = m_pictureNames.try_emplace(hash);
    if (isNew) {
        const auto kind = pictureHeader(record.photo).value().kind;
        const std::string ending = kind == PictureKind::Png ? ".png" : ".jpg";
        auto file = listedName(contact) + ending;
        std::replace(file.begin(), file.end(), '/', '-');
        known->second = clipNameFor(file, kind);
        // What is there must not be replaced, and what is made of the content is never another one's.
        const bool free = ClipFolder(m_pictures).isFree(known->second, record.photo);
        if (!m_takenPictureNames.insert(known->second).second || !free)
            known->second = hexadecimal(hash) + ending;
    }
    return known->second;
}

Result<void> Importer::compare()
{
    auto names = m_store.groupNames(static_cast<int>(m_groupNames.size()));
    if (!names)
        return names.error();
    m_groupNames = std::move(names).value();
    m_before.resize(m_cards.size());
    findUnchanged();
    findByUid();
    findByName();
    for (auto& card : m_cards) {
        if (card.fate != CardFate::Same && card.fate != CardFate::Invalid)
            settle(card);
    }
    return {};
}

void Importer::claim(PlannedCard& card, const Contact& contact)
{
    m_before[static_cast<std::size_t>(&card - m_cards.data())] = contact;
    m_claimed.insert(contact.id);
}

// Cards that a contact was imported from, word for word.
void Importer::findUnchanged()
{
    Statement find(m_store.database()->handle(),
                   "SELECT id, card FROM cards JOIN contacts USING(id) WHERE hash = ?1");
    for (std::size_t index = 0; index < m_cards.size(); ++index) {
        auto& card = m_cards[index];
        if (card.fate != CardFate::New)
            continue;
        StatementUse text(*m_pStage->get);
        text->bind(1, static_cast<std::int64_t>(index));
        text->step();
        StatementUse row(find);
        row->bind(1, card.hash);
        while (row->step()) {
            const std::string id(row->text(0));
            if (row->text(1) != text->text(0) || m_claimed.count(id) > 0)
                continue;
            m_claimed.insert(id);
            card.fate = CardFate::Same;
            card.reason = "it was imported before";
            break;
        }
    }
}

void Importer::findByUid()
{
    Statement find(m_store.database()->handle(),
                   "SELECT id FROM cards JOIN contacts USING(id) WHERE uid = ?1 AND uid <> '' "
                   "ORDER BY cards.rowid");
    for (auto& card : m_cards) {
        if (card.fate != CardFate::New || card.uid.empty())
            continue;
        StatementUse row(find);
        row->bind(1, card.uid);
        while (row->step()) {
            const std::string id(row->text(0));
            if (m_claimed.count(id) > 0)
                continue;
            if (const auto contact = m_store.read(id); contact && contact.value())
                claim(card, *contact.value());
            break;
        }
    }
}

void Importer::findByName()
{
    for (std::size_t index = 0; index < m_cards.size(); ++index) {
        auto& card = m_cards[index];
        if (card.fate != CardFate::New || m_before[index])
            continue;
        if (const auto contact = sameName(card))
            claim(card, *contact);
    }
}

// A contact that has another UID is somebody else, whatever its name.
std::optional<Contact> Importer::sameName(const PlannedCard& card)
{
    const auto key = m_store.nameKey(card.contact);
    Statement find(m_store.database()->handle(),
                   "SELECT c.id, k.uid FROM contacts c LEFT JOIN cards k USING(id) WHERE c.name_key = ?1 "
                   "AND c.surname = ?2 AND c.firstname = ?3 ORDER BY c.rowid");
    find.bindBlob(1, key).bind(2, card.contact.surname).bind(3, card.contact.firstname);
    while (find.step()) {
        const std::string id(find.text(0));
        const bool otherUid = !card.uid.empty() && !find.text(1).empty() && find.text(1) != card.uid;
        if (otherUid || m_claimed.count(id) > 0)
            continue;
        const auto contact = m_store.read(id);
        if (contact && contact.value() &&
            (shareANumber(*contact.value(), card.contact) || sameTexts(*contact.value(), card.contact)))
            return contact.value();
    }
    return std::nullopt;
}

// What the card makes of its contact. What the card says nothing of stays as the user has it.
void Importer::settle(PlannedCard& card)
{
    card.contact.group = groupFor(card);
    const auto& before = m_before[static_cast<std::size_t>(&card - m_cards.data())];
    if (!before) {
        card.contact.id = ContactStore::newId();
        return;
    }
    card.contact.id = before->id;
    card.contact.externalId = before->externalId;
    if (card.groups.empty())
        card.contact.group = before->group;
    if (card.contact.picture.empty())
        card.contact.picture = before->picture;
    if (!card.prefersNumber && hasNumber(card.contact, before->defaultNumber))
        card.contact.defaultNumber = before->defaultNumber;
    card.fate = CardFate::Changed;
    card.reason = differences(*before, card.contact);
}

// The slot of the card's first group, a new one if need be; 0 without a group or when all are taken.
int Importer::groupFor(PlannedCard& card)
{
    if (card.groups.empty())
        return 0;
    const auto& shown = card.groups.front();
    const auto name = m_ownGroup.stored(shown);
    auto found = std::find(m_groupNames.begin(), m_groupNames.end(), name);
    if (found == m_groupNames.end()) {
        found = std::find(m_groupNames.begin(), m_groupNames.end(), "");
        if (found == m_groupNames.end()) {
            card.problems.push_back("there is no room for the group \"" + shown + "\": all " +
                                    std::to_string(m_groupNames.size()) + " groups are in use");
            return 0;
        }
        *found = name;
        m_newGroups.insert(static_cast<int>(found - m_groupNames.begin()) + 1);
    }
    return static_cast<int>(found - m_groupNames.begin()) + 1;
}

Result<void> Importer::apply(const Progress& progress)
{
    // Before anything is locked: waiting for the disk takes long, and a running telephone must not.
    auto done = writePictures(progress);
    bool cancelled = false;
    if (done)
        done = m_store.inTransaction([&] {
            cancelled = !store(progress);
            return !cancelled;
        });
    if (done && cancelled)
        done = nCANCELLED;
    if (!done)
        removeNewPictures();
    return done;
}

Result<void> Importer::writePictures(const Progress& progress)
{
    const ClipFolder clips(m_pictures);
    for (std::size_t index = 0; index < m_cards.size(); ++index) {
        auto& card = m_cards[index];
        if (card.fate != CardFate::New && card.fate != CardFate::Changed)
            continue;
        StatementUse row(*m_pStage->get);
        row->bind(1, static_cast<std::int64_t>(index));
        row->step();
        if (row->blob(2).empty())
            continue;
        const auto added = clips.add(card.contact.picture, row->blob(2));
        if (!added)
            return added.error();
        card.contact.picture = added.value().name;
        if (added.value().isNew)
            m_newPictures.push_back(clips.pathFromName(added.value().name));
        if (!progress(0, m_cards.size()))
            return nCANCELLED;
    }
    return {};
}

bool Importer::store(const Progress& progress)
{
    for (const int slot : m_newGroups)
        m_store.putGroup(slot, m_groupNames[static_cast<std::size_t>(slot) - 1]);
    for (std::size_t index = 0; index < m_cards.size(); ++index) {
        const auto& card = m_cards[index];
        if (card.fate == CardFate::New || card.fate == CardFate::Changed)
            storeOne(card, index);
        if (!progress(index + 1, m_cards.size()))
            return false;
    }
    return true;
}

void Importer::storeOne(const PlannedCard& card, std::size_t index)
{
    m_store.put(card.contact);
    StatementUse row(*m_pStage->get);
    row->bind(1, static_cast<std::int64_t>(index));
    row->step();
    m_store.putCard(card.contact.id,
                    {card.uid, std::string(row->text(0)), whatBecameOf(card, std::string(row->text(1)))});
}

void Importer::removeNewPictures()
{
    for (const auto& file : m_newPictures) {
        std::error_code ignored;
        std::filesystem::remove(file, ignored);
    }
    m_newPictures.clear();
}
