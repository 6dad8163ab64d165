#include "Cards.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "ContactText.h"

namespace {

using Json = nlohmann::json;

constexpr char nCONVERTER[] = "deskphone-vcard";
constexpr std::size_t nLONGEST_LINE = 64 * 1024 * 1024;

constexpr char nBASE64[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// "" for text that is not base64.
std::string fromBase64(const std::string& text)
{
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3);
    unsigned bits = 0;
    int count = 0;
    for (const char character : text) {
        if (character == '=')
            break;
        const auto value = std::string_view(nBASE64).find(character);
        if (value == std::string_view::npos)
            return "";
        bits = bits << 6 | static_cast<unsigned>(value);
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes += static_cast<char>(bits >> count & 0xff);
        }
    }
    return bytes;
}

std::string toBase64(const std::string& bytes)
{
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        unsigned bits = 0;
        for (std::size_t i = at; i < at + 3; ++i)
            bits = bits << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0u);
        for (std::size_t i = 0; i < 4; ++i)
            text += at + i <= bytes.size() ? nBASE64[bits >> (18 - 6 * i) & 63] : '=';
    }
    return text;
}

DefaultNumber numberNamed(const std::string& name)
{
    const auto found = std::find_if(nNUMBER_FIELDS.begin(), nNUMBER_FIELDS.end(),
                                    [&](const auto& field) { return name == field.name; });
    return found == nNUMBER_FIELDS.end() ? DefaultNumber::None : found->number;
}

std::string nameOf(DefaultNumber number)
{
    const auto found = std::find_if(nNUMBER_FIELDS.begin(), nNUMBER_FIELDS.end(),
                                    [&](const auto& field) { return number == field.number; });
    return found == nNUMBER_FIELDS.end() ? "" : found->name;
}

CardRecord toRecord(const std::string& line)
{
    const auto json = Json::parse(line);
    CardRecord record;
    record.line = json.value("line", std::size_t{0});
    record.end = json.value("end", std::size_t{0});
    record.invalid = json.value("invalid", "");
    record.problems = json.value("problems", std::vector<std::string>());
    if (!record.invalid.empty())
        return record;
    record.card = json.at("card");
    record.uid = json.value("uid", "");
    for (const auto& field : nCARD_FIELDS)
        record.contact.*field.text = json.value(field.name, "");
    record.contact.defaultNumber = numberNamed(json.value("preferred", ""));
    record.groups = json.value("groups", std::vector<std::string>());
    record.notShown = json.value("notShown", std::vector<std::string>());
    if (const auto photo = json.find("photo"); photo != json.end() && photo->is_object())
        record.photo = fromBase64(photo->value("base64", ""));
    return record;
}

// The groups of the card with the contact's present group in place of the one it had.
std::vector<std::string> presentGroups(const ImportedCard& imported, const std::string& group)
{
    std::vector<std::string> groups;
    if (!group.empty())
        groups.push_back(group);
    for (const auto& other : imported.groups) {
        if (other != imported.group && other != group)
            groups.push_back(other);
    }
    return groups;
}

std::string presentText(const Contact& contact, const CardField& field, const ImportedCard& imported)
{
    const auto& text = contact.*field.text;
    for (const auto& [name, whole] : imported.whole) {
        if (name == field.name && trimmedText(cutText(whole, field.limit)) == text)
            return whole;
    }
    return text;
}

} // namespace

std::string pictureMime(const std::string& bytes)
{
    if (bytes.rfind("\x89PNG\r\n\x1a\n", 0) == 0)
        return "image/png";
    return bytes.rfind("\xff\xd8\xff", 0) == 0 ? "image/jpeg" : "";
}

CardReader::CardReader(std::unique_ptr<ChildProgram> program)
    : m_pProgram(std::move(program))
{
}

Result<std::unique_ptr<CardReader>> CardReader::open(const std::filesystem::path& file)
{
    auto program = ChildProgram::start(ChildProgram::besideUs(nCONVERTER), {"parse", file.string()},
                                       ChildProgram::Talk::WeRead);
    if (!program)
        return program.error();
    return std::unique_ptr<CardReader>(new CardReader(std::move(program).value()));
}

Result<std::optional<CardRecord>> CardReader::next()
{
    const auto line = m_pProgram->readLine(nLONGEST_LINE);
    if (!line)
        return line.error();
    if (!line.value()) {
        const auto ended = m_pProgram->finish();
        return ended ? Result<std::optional<CardRecord>>(std::optional<CardRecord>()) : ended.error();
    }
    try {
        return std::optional(toRecord(*line.value()));
    } catch (const Json::exception& error) {
        return Error{ErrorCode::Malformed,
                     std::string("\"") + nCONVERTER + "\" sent nonsense: " + error.what()};
    }
}

std::string ImportedCard::toText() const
{
    Json json;
    json["groups"] = groups;
    json["group"] = group;
    json["picture"] = contact.picture;
    json["preferred"] = nameOf(contact.defaultNumber);
    json["whole"] = whole;
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

ImportedCard ImportedCard::fromText(const std::string& text)
{
    ImportedCard imported;
    try {
        const auto json = Json::parse(text);
        imported.groups = json.value("groups", imported.groups);
        imported.group = json.value("group", "");
        imported.contact.picture = json.value("picture", "");
        imported.contact.defaultNumber = numberNamed(json.value("preferred", ""));
        imported.whole = json.value("whole", imported.whole);
        return imported;
    } catch (const Json::exception&) {
        return {};
    }
}

CardWriter::CardWriter(std::unique_ptr<ChildProgram> program)
    : m_pProgram(std::move(program))
{
}

Result<std::unique_ptr<CardWriter>> CardWriter::open(const std::filesystem::path& file,
                                                     const std::string& version)
{
    auto program = ChildProgram::start(ChildProgram::besideUs(nCONVERTER), {"write", "--version", version},
                                       ChildProgram::Talk::WeWrite, file);
    if (!program)
        return program.error();
    return std::unique_ptr<CardWriter>(new CardWriter(std::move(program).value()));
}

// What was not changed on the telephone is left out: the card keeps it as it has it.
Result<void> CardWriter::write(const Contact& contact, const KeptCard& kept, const std::string& group,
                               const std::string& photo)
{
    const bool isNew = kept.card.empty();
    const auto imported = isNew ? ImportedCard() : ImportedCard::fromText(kept.imported);
    Json json;
    if (!isNew)
        json["card"] = kept.card;
    for (const auto& field : nCARD_FIELDS)
        json[field.name] = presentText(contact, field, imported);
    if (isNew || contact.defaultNumber != imported.contact.defaultNumber)
        json["preferred"] = nameOf(contact.defaultNumber);
    if (isNew || group != imported.group)
        json["groups"] = presentGroups(imported, group);
    if (isNew || contact.picture != imported.contact.picture) {
        if (const auto mime = pictureMime(photo); !mime.empty())
            json["photo"] = {{"mime", mime}, {"base64", toBase64(photo)}};
        else if (contact.picture.empty())
            json["photo"] = nullptr;
    }
    return m_pProgram->write(json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n");
}

Result<void> CardWriter::finish()
{
    return m_pProgram->finish();
}
