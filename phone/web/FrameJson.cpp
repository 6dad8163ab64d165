#include "web/FrameJson.h"

#include <framework/display/Frame.h>

#include <nlohmann/json.hpp>

namespace DisplayAPI {

namespace {

const char* name(FrameRole role)
{
    switch (role) {
    case FrameRole::None:
        return "none";
    case FrameRole::Idle:
        return "idle";
    case FrameRole::List:
        return "list";
    case FrameRole::ExclusiveList:
        return "exclusive";
    case FrameRole::Form:
        return "form";
    case FrameRole::Menu:
        return "menu";
    case FrameRole::Question:
        return "question";
    case FrameRole::Notification:
        return "notification";
    case FrameRole::Progress:
        return "progress";
    case FrameRole::Dialler:
        return "dialler";
    }
    return "none";
}

const char* name(FrameField::Kind kind)
{
    switch (kind) {
    case FrameField::Kind::Text:
        return "text";
    case FrameField::Kind::Number:
        return "number";
    case FrameField::Kind::Selection:
        return "selection";
    }
    return "text";
}

// As telephones write it.
const char* name(FrameField::Letters letters)
{
    switch (letters) {
    case FrameField::Letters::Words:
        return "Abc";
    case FrameField::Letters::Small:
        return "abc";
    case FrameField::Letters::Capitals:
        return "ABC";
    }
    return "abc";
}

const char* name(FrameCall::State state)
{
    switch (state) {
    case FrameCall::State::Calling:
        return "calling";
    case FrameCall::State::Alerting:
        return "alerting";
    case FrameCall::State::Incoming:
        return "incoming";
    case FrameCall::State::Connected:
        return "connected";
    case FrameCall::State::Held:
        return "held";
    case FrameCall::State::Failed:
        return "failed";
    }
    return "failed";
}

} // namespace

// Found by the JSON library by their name.
static void to_json(nlohmann::json& json, const FrameRow& row)
{
    json = {{"position", row.position}, {"icon", row.icon}, {"text", row.text}, {"selected", row.selected}};
}

static void to_json(nlohmann::json& json, const FrameField& field)
{
    json = {{"kind", name(field.kind)}, {"position", field.position}, {"icon", field.icon},
            {"label", field.label},     {"value", field.value},       {"choice", field.choice},
            {"choices", field.choices}, {"cursor", field.cursor},     {"maxLength", field.maxLength},
            {"focused", field.focused}, {"readOnly", field.readOnly}, {"letters", name(field.letters)}};
}

static void to_json(nlohmann::json& json, const FrameDialler& dialler)
{
    json = {{"prefix", dialler.prefix}, {"line1", dialler.line1},       {"line2", dialler.line2},
            {"edit", dialler.edit},     {"editMode", dialler.editMode}, {"scrolls", dialler.scrolls}};
}

static void to_json(nlohmann::json& json, const FrameSoftKey& key)
{
    json = key.label;
}

static void to_json(nlohmann::json& json, const FrameCall& call)
{
    json = {{"id", call.id},         {"state", name(call.state)}, {"name", call.name},
            {"number", call.number}, {"text", call.text},         {"since", call.since}};
}

static void to_json(nlohmann::json& json, const FrameSigns& signs)
{
    json = {{"offHook", signs.offHook}, {"dialPad", signs.dialPad}, {"calls", signs.calls}};
}

static void to_json(nlohmann::json& json, const FrameScreen& screen)
{
    json = {{"role", name(screen.role)},
            {"id", screen.id},
            {"type", screen.type},
            {"state", screen.state},
            {"title", screen.title},
            {"text", screen.text},
            {"rows", screen.rows},
            {"rowCount", screen.rowCount},
            {"searchOpen", screen.searchOpen},
            {"search", screen.search},
            {"pending", screen.pending},
            {"asksForText", screen.asksForText},
            {"highlighted", screen.highlighted},
            {"waiting", screen.waiting}};
    if (screen.role == FrameRole::Form)
        json["fields"] = screen.fields;
    if (screen.role == FrameRole::Dialler)
        json["dialler"] = screen.dialler;
}

static void addPicture(nlohmann::json& json, const std::string& path, const PictureAddress& addressOf)
{
    const auto address = path.empty() ? "" : addressOf(path);
    json["imageLost"] = !path.empty() && address.empty();
    json["image"] = address;
}

static nlohmann::json withPictures(const FrameScreen& screen, const PictureAddress& addressOf)
{
    nlohmann::json json = screen;
    addPicture(json, screen.image, addressOf);
    for (std::size_t i = 0; i < screen.rows.size(); ++i)
        addPicture(json["rows"][i], screen.rows[i].image, addressOf);
    for (std::size_t i = 0; screen.role == FrameRole::Form && i < screen.fields.size(); ++i)
        addPicture(json["fields"][i], screen.fields[i].image, addressOf);
    return json;
}

} // namespace DisplayAPI

std::string toJson(const DisplayAPI::Frame& frame, const PictureAddress& addressOf)
{
    nlohmann::json json{{"number", frame.number},
                        {"tabs", frame.tabs},
                        {"currentTab", frame.currentTab},
                        {"tabBarFocused", frame.tabBarFocused},
                        {"base", withPictures(frame.base, addressOf)},
                        {"popup", nullptr},
                        {"softKeys", frame.softKeys},
                        {"systemWindow", frame.systemWindow},
                        {"signs", frame.signs}};
    if (!frame.popups.empty())
        json["popup"] = withPictures(frame.popups.back(), addressOf);
    return json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}
