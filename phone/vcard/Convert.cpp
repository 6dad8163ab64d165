#include "Convert.h"

#include <sstream>

#include <glib.h>
#include <nlohmann/json.hpp>

#include "CardWriter.h"
#include "ReadFields.h"
#include "WriteFields.h"

namespace vcard {

namespace {

using Json = nlohmann::ordered_json;

void writeLine(std::ostream& out, const Json& object)
{
    out << object.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
}

bool isGroupOfPeople(const Card& card)
{
    for (const auto& property : card.properties) {
        const bool kind = property.is("KIND") || property.is("X-ADDRESSBOOKSERVER-KIND");
        if (kind && (property.text() == "group" || property.text() == "GROUP"))
            return true;
    }
    return false;
}

// Why the phone cannot use the card, "" when it can.
std::string unusable(const SourceCard& source, const Card& card, const ContactRecord& record)
{
    if (!source.complete)
        return "the card is cut off: its END:VCARD is missing";
    if (isGroupOfPeople(card))
        return "the card describes a group of other cards, not a contact";
    if (record[Field::Surname].empty() && record[Field::Firstname].empty())
        return "the card has neither name nor company, number or e-mail address";
    return "";
}

Json describe(const SourceCard& source, const Limits& limits)
{
    std::vector<std::string> problems;
    const auto card = parseCard(source, limits, problems);
    const auto reading = readFields(card);
    for (const auto& problem : reading.problems)
        problems.push_back("line " + std::to_string(source.line) + ": " + problem);

    Json object{{"line", source.line}, {"end", source.end}};
    const auto reason = unusable(source, card, reading.record);
    if (reason.empty()) {
        const auto kept = card.version == Version::V40 ? Version::V40 : Version::V30;
        object["card"] = writeCard(card, kept);
        toJson(reading.record, object);
        object["notShown"] = reading.notShown;
    } else {
        object["invalid"] = reason;
    }
    object["problems"] = problems;
    return object;
}

Card keptCard(const Json& object)
{
    std::istringstream text(object.value("card", ""));
    CardReader reader(text, Limits());
    SourceCard source;
    if (!reader.next(source))
        return {};
    std::vector<std::string> problems;
    return parseCard(source, Limits(), problems);
}

std::string cardOf(const std::string& line, Version version)
{
    const auto object = Json::parse(line);
    auto card = keptCard(object);
    auto record = readFields(card).record;
    updateFromJson(record, object);
    writeFields(record, card);
    return writeCard(card, version);
}

} // namespace

void silenceLibrary()
{
    g_log_set_writer_func(
        [](GLogLevelFlags, const GLogField*, gsize, gpointer) { return G_LOG_WRITER_HANDLED; }, nullptr,
        nullptr);
}

Outcome parseCards(std::istream& in, std::ostream& out, std::ostream& errors, const Limits& limits)
{
    CardReader reader(in, limits);
    SourceCard source;
    bool any = false;
    while (reader.next(source)) {
        any = true;
        writeLine(out, describe(source, limits));
    }
    if (!any) {
        errors << "This is not a vCard file: it has no line BEGIN:VCARD.\n";
        return Outcome::NotACardFile;
    }
    if (reader.reachedFileLimit()) {
        errors << "The file is larger than " << limits.fileBytes / 1024 / 1024
               << " MB; what follows was not read. Split the file and import the parts.\n";
        return Outcome::Failed;
    }
    return Outcome::Done;
}

Outcome writeCards(std::istream& in, std::ostream& out, std::ostream& errors, Version version)
{
    auto outcome = Outcome::Done;
    std::string line;
    for (std::size_t number = 1; std::getline(in, line); ++number) {
        if (line.empty())
            continue;
        try {
            out << cardOf(line, version);
        } catch (const Json::exception& notARecord) {
            errors << "line " << number << ": not a contact record: " << notARecord.what() << "; left out\n";
            outcome = Outcome::Failed;
        }
    }
    return outcome;
}

} // namespace vcard
