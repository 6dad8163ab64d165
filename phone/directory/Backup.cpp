#include "Backup.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include <sys/stat.h>

#include "ContactText.h"
#include "pictures/ClipFolder.h"
#include "pictures/PictureFile.h"

namespace fs = std::filesystem;

namespace {

constexpr std::uint32_t nAPPLICATION_ID = 0x44426275; // "DBbu"
constexpr int nVERSION = 1;

// Far beyond what the telephone writes, but a hostile file must not eat the memory.
constexpr int nGREATEST_VALUE = 64 * 1024 * 1024;
constexpr int nMOST_GROUPS = 1000;

constexpr std::string_view nPICTURES = "pictures/";

// sqlar: https://www.sqlite.org/sqlar.html
constexpr char nSCHEMA[] = R"(
CREATE TABLE options(tag TEXT PRIMARY KEY, value INTEGER);
CREATE TABLE groups(slot INTEGER PRIMARY KEY, name TEXT);
CREATE TABLE contacts(
    id TEXT PRIMARY KEY,
    surname TEXT, firstname TEXT, office TEXT, office2 TEXT, mobile TEXT, private TEXT, email TEXT,
    company TEXT, address TEXT, address2 TEXT, job_function TEXT, picture TEXT, external_id TEXT,
    slot INTEGER, default_number INTEGER, card_uid TEXT, card TEXT, card_imported TEXT);
CREATE TABLE sqlar(name TEXT PRIMARY KEY, mode INT, mtime INT, sz INT, data BLOB);
)";

// What stands behind "pictures/"; "" for anything else.
std::string_view nameOf(std::string_view path)
{
    return path.substr(0, nPICTURES.size()) == nPICTURES ? path.substr(nPICTURES.size()) : std::string_view();
}

// No folder, no device.
Result<void> checkIsFile(const fs::path& file)
{
    std::error_code failed;
    const auto status = fs::status(file, failed);
    if (!fs::exists(status))
        return Error{ErrorCode::NotFound,
                     "\"" + file.string() + "\" cannot be read: " + failed.message() + "."};
    if (!fs::is_regular_file(status))
        return Error{ErrorCode::Denied, "\"" + file.string() + "\" is no file."};
    if (::access(file.c_str(), R_OK) != 0)
        return Error{ErrorCode::Denied, "\"" + file.string() + "\" cannot be read: " +
                                            std::error_code(errno, std::generic_category()).message() + "."};
    return {};
}

std::string schemaOf(Database& database)
{
    Statement row(database.handle(), "SELECT type || ' ' || name || ' ' || tbl_name || ' ' || "
                                     "ifnull(sql, '') FROM sqlite_schema ORDER BY 1");
    std::string schema;
    while (row.step())
        schema.append(row.text(0)).append("\n");
    return schema;
}

std::string expectedSchema()
{
    Database database;
    database.execute(nSCHEMA);
    return schemaOf(database);
}

std::string counted(std::size_t count, const std::string& one)
{
    return (count == 0 ? "no" : std::to_string(count)) + " " + one + (count == 1 ? "" : "s");
}

} // namespace

std::string BackupCounts::text() const
{
    return counted(contacts, "contact") + ", " + counted(groups, "group") + ", " +
           counted(pictures, "picture");
}

// --- Writing ---

Result<BackupWriter> BackupWriter::beside(const fs::path& file)
{
    auto part = NewFile::beside(file);
    if (!part)
        return part.error();
    BackupWriter writer(file, std::move(part).value());
    const auto begun = writer.attempt([&]() -> Result<void> {
        writer.m_pDatabase = std::make_unique<Database>(writer.m_part.part(), Database::Mode::ReadWrite);
        // Nobody sees the file before it is finished.
        writer.m_pDatabase->queryText("PRAGMA journal_mode = MEMORY");
        writer.m_pDatabase->execute("PRAGMA synchronous = OFF");
        writer.m_pDatabase->createSchema(nAPPLICATION_ID, nVERSION, nSCHEMA);
        writer.m_pTransaction = std::make_unique<Transaction>(*writer.m_pDatabase);
        return {};
    });
    if (!begun)
        return begun.error();
    return writer;
}

BackupWriter::BackupWriter(fs::path file, NewFile part)
    : m_file(std::move(file))
    , m_part(std::move(part))
{
}

Result<void> BackupWriter::attempt(const std::function<Result<void>()>& work) const
{
    try {
        return work();
    } catch (const SqliteError& error) {
        auto reason = error.toError();
        if (reason.code != ErrorCode::Full)
            reason.sentence = "\"" + m_file.string() + "\" cannot be written (" + error.message + ").";
        return reason;
    }
}

Result<void> BackupWriter::addPictures(const fs::path& pictures)
{
    ClipFolder folder(pictures);
    auto clips = folder.clips();
    std::sort(clips.begin(), clips.end());
    noteOthers(pictures, clips);
    return attempt([&]() -> Result<void> {
        for (const auto& clip : clips)
            addPicture(clip, pictures / clip);
        return {};
    });
}

void BackupWriter::noteOthers(const fs::path& pictures, const std::vector<std::string>& clips)
{
    std::error_code failed;
    fs::directory_iterator entry(pictures, failed);
    for (; !failed && entry != fs::directory_iterator(); entry.increment(failed)) {
        const auto name = entry->path().filename().string();
        if (name.front() != '.' && !std::binary_search(clips.begin(), clips.end(), name))
            m_leftOut.push_back(name);
    }
}

void BackupWriter::addPicture(const std::string& name, const fs::path& file)
{
    const auto opened = PictureFile::open(file);
    const auto content = opened ? opened.value().content() : opened.error();
    if (!content) {
        m_leftOut.push_back(name);
        return;
    }
    constexpr std::int64_t nanoseconds = 1'000'000'000;
    const auto path = std::string(nPICTURES) + name;
    Statement row(m_pDatabase->handle(), "INSERT INTO sqlar VALUES(?1, ?2, ?3, ?4, ?5)");
    row.bind(1, path).bind(2, std::int64_t{S_IFREG | S_IRUSR | S_IWUSR});
    row.bind(3, opened.value().stamp().changed / nanoseconds);
    row.bind(4, static_cast<std::int64_t>(content.value().size())).bindBlob(5, content.value()).run();
    ++m_counts.pictures;
}

Result<void> BackupWriter::addContacts(ContactStore& store)
{
    return attempt([&]() -> Result<void> {
        const auto options = store.options();
        if (!options)
            return options.error();
        Statement option(m_pDatabase->handle(), "INSERT INTO options VALUES(?1, ?2)");
        for (const auto& [tag, value] : options.value())
            option.bind(1, tag).bind(2, std::int64_t{value}).run();

        const auto groups = store.groupNames(0);
        if (!groups)
            return groups.error();
        Statement group(m_pDatabase->handle(), "INSERT INTO groups VALUES(?1, ?2)");
        for (std::size_t index = 0; index < groups.value().size(); ++index) {
            if (groups.value()[index].empty())
                continue;
            group.bind(1, static_cast<std::int64_t>(index + 1)).bind(2, groups.value()[index]).run();
            ++m_counts.groups;
        }

        Statement row(m_pDatabase->handle(),
                      "INSERT INTO contacts VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, "
                      "?10, ?11, ?12, ?13, ?14, ?15, ?16, ?17, ?18, ?19)");
        return store.forEach([&](const Contact& contact, const KeptCard& card) {
            int column = 1;
            const auto id = contact.id.empty() ? ContactStore::newId() : contact.id;
            row.bind(column++, id);
            for (const auto text : nTEXT_FIELDS)
                row.bind(column++, contact.*text);
            row.bind(column++, std::int64_t{contact.group});
            row.bind(column++, static_cast<std::int64_t>(contact.defaultNumber));
            row.bind(column++, card.uid);
            row.bind(column++, card.card);
            row.bind(column, card.imported).run();
            ++m_counts.contacts;
            return true;
        });
    });
}

Result<void> BackupWriter::finish()
{
    const auto written = attempt([&]() -> Result<void> {
        m_pTransaction->commit();
        m_pTransaction.reset();
        m_pDatabase.reset();
        return {};
    });
    return written ? m_part.putInPlace() : written;
}

// --- Reading ---

Backup::Backup(std::unique_ptr<Database> database)
    : m_pDatabase(std::move(database))
{
}

bool Backup::isBackup(const fs::path& file)
{
    const auto header = readSqliteFileHeader(file);
    return header.isDatabase && header.applicationId == nAPPLICATION_ID;
}

Result<std::unique_ptr<Backup>> Backup::open(const fs::path& file)
{
    if (const auto readable = checkIsFile(file); !readable)
        return readable.error();
    if (!isBackup(file))
        return Error{ErrorCode::Malformed, "\"" + file.string() + "\" is no backup of this telephone."};
    if (readSqliteFileHeader(file).userVersion > nVERSION)
        return Error{ErrorCode::Malformed,
                     "\"" + file.string() + "\" was written by a later version of this telephone."};
    try {
        // What lies beside the file, a log say, does not belong to it.
        auto backup =
            std::unique_ptr<Backup>(new Backup(std::make_unique<Database>(file, Database::Mode::Immutable)));
        backup->check();
        backup->count();
        return backup;
    } catch (const SqliteError& error) {
        return Error{ErrorCode::Malformed,
                     "The backup \"" + file.string() + "\" is damaged (" + error.message + ")."};
    }
}

void Backup::check() const
{
    Database& database = *m_pDatabase;
    sqlite3_limit(database.handle(), SQLITE_LIMIT_LENGTH, nGREATEST_VALUE);
    if (schemaOf(database) != expectedSchema())
        throw SqliteError{SQLITE_CORRUPT, "it has tables that no backup has"};
    if (const auto finding = database.queryText("PRAGMA integrity_check(1)"); finding != "ok")
        throw SqliteError{SQLITE_CORRUPT, finding};
    Statement picture(database.handle(), "SELECT name, sz, length(data) FROM sqlar");
    while (picture.step()) {
        const auto size = static_cast<std::size_t>(picture.number(2));
        if (!ClipFolder::isClipName(nameOf(picture.text(0))))
            throw SqliteError{SQLITE_CORRUPT, "it has a picture with an impossible name"};
        if (picture.number(1) != picture.number(2) || size > picture_limits::nFILE)
            throw SqliteError{SQLITE_CORRUPT, "it has a picture that is cut off or too large"};
    }
}

void Backup::count()
{
    const auto rowsOf = [this](const std::string& table) {
        return static_cast<std::size_t>(m_pDatabase->queryNumber("SELECT count(*) FROM " + table));
    };
    m_counts = {rowsOf("contacts"), rowsOf("groups"), rowsOf("sqlar")};
}

void Backup::forEachPicture(
    const std::function<void(const std::string& name, std::string_view content)>& visit) const
{
    Statement picture(m_pDatabase->handle(), "SELECT name, data FROM sqlar ORDER BY name");
    while (picture.step())
        visit(std::string(nameOf(picture.text(0))), picture.blob(1));
}

void Backup::fill(ContactStore& store,
                  const std::function<std::string(const std::string& name)>& pictureName) const
{
    Statement option(m_pDatabase->handle(), "SELECT tag, value FROM options");
    while (option.step())
        store.putOption(std::string(option.text(0)), static_cast<int>(option.number(1)));
    Statement group(m_pDatabase->handle(), "SELECT slot, name FROM groups WHERE slot BETWEEN 1 AND ?1");
    group.bind(1, std::int64_t{nMOST_GROUPS});
    while (group.step())
        store.putGroup(static_cast<int>(group.number(0)), std::string(group.text(1)));

    Statement row(m_pDatabase->handle(), "SELECT * FROM contacts");
    while (row.step()) {
        int column = 0;
        Contact contact;
        contact.id = row.text(column++);
        for (const auto text : nTEXT_FIELDS)
            contact.*text = row.text(column++);
        contact.group = static_cast<int>(row.number(column++));
        contact.defaultNumber = toDefaultNumber(row.number(column++));
        const std::string uid(row.text(column++));
        const std::string card(row.text(column++));
        const std::string imported(row.text(column));

        if (!isContactId(contact.id))
            contact.id = ContactStore::newId();
        makeFit(contact);
        contact.picture = pictureName(contact.picture);
        store.put(contact);
        if (!card.empty())
            store.putCard(contact.id, {uid, card, imported});
    }
}
