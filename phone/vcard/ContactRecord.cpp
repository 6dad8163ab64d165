#include "ContactRecord.h"

#include <nlohmann/json.hpp>

#include "Text.h"

namespace vcard {

namespace {

constexpr std::array<const char*, nFIELDS> nFIELD_NAMES{"surname", "firstname", "office",      "office2",
                                                        "mobile",  "private",   "email",       "company",
                                                        "address", "address2",  "jobFunction", "uid"};

std::optional<Field> numberNamed(const std::string& name)
{
    for (const Field field : nNUMBERS) {
        if (name == fieldName(field))
            return field;
    }
    return std::nullopt;
}

void updatePhoto(std::optional<Photo>& photo, const nlohmann::ordered_json& value)
{
    photo.reset();
    if (!value.is_null())
        photo = Photo{value.at("mime"), value.at("base64")};
}

} // namespace

const char* fieldName(Field field)
{
    return nFIELD_NAMES.at(static_cast<std::size_t>(field));
}

void toJson(const ContactRecord& record, nlohmann::ordered_json& object)
{
    for (std::size_t i = 0; i < nFIELDS; ++i)
        object[nFIELD_NAMES[i]] = record.texts[i];
    object["preferred"] = record.preferred ? fieldName(*record.preferred) : "";
    object["groups"] = record.groups;
    object["photo"] = nullptr;
    if (record.photo)
        object["photo"] = {{"mime", record.photo->mime}, {"base64", record.photo->base64}};
}

void updateFromJson(ContactRecord& record, const nlohmann::ordered_json& object)
{
    for (std::size_t i = 0; i < nFIELDS; ++i) {
        if (object.contains(nFIELD_NAMES[i]))
            record.texts[i] = oneLine(object[nFIELD_NAMES[i]].get<std::string>());
    }
    if (object.contains("preferred"))
        record.preferred = numberNamed(object["preferred"]);
    if (object.contains("groups")) {
        record.groups.clear();
        for (const auto& group : object["groups"])
            record.groups.push_back(oneLine(group.get<std::string>()));
    }
    if (object.contains("photo"))
        updatePhoto(record.photo, object["photo"]);
}

} // namespace vcard
